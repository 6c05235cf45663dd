#include "integration/desktop/DesktopFixture.h"
#include "platform/linux/X11Keyboard.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace tabwright::platform {

namespace {

/// A page that tells what it sees in its title: that it has the keyboard, then the field's text and the last key.
constexpr const char* page =
    "data:text/html,<meta charset=utf-8><title>-</title><textarea autofocus></textarea><script>"
    "let key='';onkeydown=e=>{key=e.key+'/'+e.code;show()};oninput=()=>show();const "
    "field=document.querySelector('textarea');"
    "function show(){document.title=field.value+' ['+key+']'}"
    "const wait=setInterval(()=>{if(document.hasFocus()){clearInterval(wait);field.focus();document.title='ready'}},20)"
    "</script>";

class KeysInABrowser : public DesktopTest {
protected:
  void SetUp() override {
    if (access(browserPath, X_OK) != 0)
      GTEST_SKIP() << "needs Chromium";
    browser = std::make_unique<Program>(std::vector<std::string>{browserPath, "--no-sandbox", "--no-first-run",
                                                                 "--password-store=basic",
                                                                 "--user-data-dir=" + profile.path().string(), page});
    windows.activate(windowOf(windows, *browser).id);
    eventually([&] { return title().starts_with("ready"); });
  }

  std::string title() {
    const std::string name = windowOf(windows, *browser).name;
    return name.substr(0, name.rfind(" - Chromium"));
  }
  void expectTitle(const std::string& expected) {
    eventually([&] { return title() == expected; });
    EXPECT_EQ(title(), expected);
  }

  static constexpr const char* browserPath = "/usr/bin/chromium";
  testsupport::ScratchFolder profile;
  std::unique_ptr<Program> browser;
  X11Keyboard keyboard;
};

TEST_F(KeysInABrowser, ArriveAsTheUsersDo) {
  keyboard.type("Aé\u044f世😀", {}, {});
  eventually([&] { return title().starts_with("Aé\u044f世😀 ["); });
  EXPECT_THAT(title(), testing::StartsWith("Aé\u044f世😀 ["));
  keyboard.press({.symbol = XKB_KEY_a}, {.control = true}, {});
  keyboard.press({.symbol = XKB_KEY_KP_7}, {}, {});
  expectTitle("7 [7/Numpad7]");
  keyboard.press({.symbol = XKB_KEY_F13, .position = KEY_F13}, {}, {});
  expectTitle("7 [F13/F13]");
  ASSERT_EQ(std::system("setxkbmap us,ru"), 0);
  keyboard.type("я", {}, {});
  expectTitle("7я [я/KeyZ]");
  ASSERT_EQ(std::system("setxkbmap us"), 0);
}

} // namespace

} // namespace tabwright::platform
