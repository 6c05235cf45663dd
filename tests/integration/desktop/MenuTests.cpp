// The menus of real programs: GTK's, which can be read while they are closed, and Chromium's, which can't.
#include "automation/ApplicationLaunch.h"
#include "automation/MenuSearch.h"
#include "integration/desktop/DesktopFixture.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/X11Keyboard.h"
#include "platform/linux/XdgApplications.h"
#include "support/RunTask.h"
#include "support/ScratchFolder.h"
#include "targets/MachineProbe.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>

namespace tabwright::automation {

namespace {

using platform::ClientWindow;
using platform::eventually;

class RealMenus : public platform::DesktopTest {
protected:
  /// A browser that was started with its controls shown.
  struct ShownControls final : BrowserControls {
    void show(const targets::RunningApplication&, const platform::CallLimits&) override {}
  };

  std::string find(std::string_view path) {
    const auto item = findMenuItemByPath(app, path, TitleCase::counts, services, {});
    return item ? item->path : item.error().cause()->sentence;
  }
  std::string findTitle(std::string_view title, StringFilterEnum filter) {
    const auto item = findMenuItemByTitle(app, title, filter, TitleCase::ignored, services, {});
    return item ? item->path : item.error().cause()->sentence;
  }
  void press(std::string_view path) {
    const auto item = findMenuItemByPath(app, path, TitleCase::counts, services, {});
    ASSERT_TRUE(item) << item.error().errorDescription() << ": " << item.error().cause()->sentence;
    item->press({});
  }
  std::ptrdiff_t windowsOf(const platform::Program& program) {
    return std::ranges::count(windows.windows(), program.pid(), &ClientWindow::pid);
  }

  platform::X11Keyboard keyboard;
  platform::XdgApplications installed;
  platform::SystemClock clock;
  targets::MachineProbe probe{[this] {
    std::vector<targets::RunningApplication> running;
    for (const ClientWindow& window : windows.windows()) {
      if (const auto known = installed.applicationOf(window))
        running.push_back({known->id, known->name, window.pid, window.isActive});
    }
    return running;
  }};
  targets::TargetContextManager targets{probe};
  ShownControls controls;
  DesktopServices services{accessibility, windows, keyboard, installed, clock, targets, controls};
  targets::RunningApplication app;
};

TEST_F(RealMenus, OfAnEditorAreFoundAndPressed) {
  platform::Program editor({"mousepad", "--disable-server"});
  windowOf(windows, editor);
  app = {"org.xfce.mousepad", "Mousepad", editor.pid(), true};

  EXPECT_EQ(find("File > Save As…"), "File > Save As...");
  EXPECT_EQ(find("Document > Tab Size > Other..."), "Document > Tab Size > Other...");
  EXPECT_THAT(find("Edit > Convert > To Lower"),
              testing::StartsWith("“Edit > Convert” has no item “To Lower”. It has “To "
                                  "Lowercase”"));
  EXPECT_EQ(findTitle("line up", StringFilterEnum::isExactly), "Edit > Move > Line Up");
  EXPECT_EQ(findTitle("^c\\+\\+$", StringFilterEnum::regex), "Document > Filetype > Source > C++");
  EXPECT_FALSE(findMenuItemByPath(app, "Edit > Undo", TitleCase::counts, services, {})->isEnabled());

  press("File > New Window");
  eventually([&] { return windowsOf(editor) == 2; });
  const MenuItemEntity reference{"", {"File", "Quit"}, {"org.xfce.mousepad", "Mousepad"}};
  const auto referred = findMenuItemByReference(reference, services, {});
  ASSERT_TRUE(referred) << referred.error().errorDescription();
  EXPECT_TRUE(referred->isEnabled());
  press("File > Open..."); // a dialog that waits for its user, and until then GTK reads no menus
  eventually([&] { return windowsOf(editor) == 3; });
  editor.kill();
  eventually([&] { return windows.windows().empty(); });
  EXPECT_EQ(findMenuItemByReference(reference, services, {}).error().kind(), engine::AxeError::appCouldNotBeActivated);
}

TEST_F(RealMenus, OfABrowserAreOpenedToBeReadAndClosedAgain) {
  if (access("/usr/bin/chromium", X_OK) != 0)
    GTEST_SKIP() << "needs Chromium";
  static_cast<void>(accessibility.applications({})); // browsers join a bus that is switched on when they start
  const testsupport::ScratchFolder profile;
  platform::Program browser({"/usr/bin/chromium", "--no-sandbox", "--no-first-run", "--password-store=basic",
                             "--force-renderer-accessibility=basic", "--user-data-dir=" + profile.path().string(),
                             "about:blank"});
  const ClientWindow window = windowOf(windows, browser);
  app = {"org.chromium.chromium", "Chromium", browser.pid(), true};

  EXPECT_EQ(find("Chromium > Print..."), "Chromium > Print…");
  EXPECT_EQ(find("Chromium > More tools > Task manager"), "Chromium > More tools > Task manager");
  EXPECT_EQ(findTitle("history page", StringFilterEnum::contains), "Chromium > History > Open history page");

  platform::Program editor({"mousepad", "--disable-server"});
  windows.activate(windowOf(windows, editor).id);
  EXPECT_EQ(find("Chromium > New window"), "Chromium > New window");
  EXPECT_EQ(windows.windows().front().pid, editor.pid()) << "what was in front is there again";

  const auto name = [&] { return windowOf(windows, browser).name; };
  windows.activate(window.id);
  press("Chromium > History > Open history page");
  eventually([&] { return name().starts_with("History"); });
  press("Chromium > New window");
  eventually([&] { return windowsOf(browser) == 2; });
}

TEST_F(RealMenus, OfAProgramThatDoesNotRunAreThereOnceItWasStarted) {
  const auto started = testsupport::runTask(activateOrLaunch("org.xfce.mousepad", services, {}));
  ASSERT_TRUE(started);
  app = *started;
  EXPECT_EQ(find("File > Quit"), "File > Quit");
  EXPECT_EQ(testsupport::runTask(activateOrLaunch(".focussed", services, {}))->process, app.process);
  press("File > Quit");
  eventually([&] { return windows.windows().empty(); });
}

} // namespace

} // namespace tabwright::automation
