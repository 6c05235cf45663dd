// Which keys go to the page, which to the display, and what a page is told of them.
#include "scripting/driver/PageKeyboard.h"
#include "support/ModelWorkspace.h"
#include "support/SteppedDeadlines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <variant>

namespace tabwright::scripting {
namespace {

using testing::ElementsAre;
using Deeds = std::vector<std::string>;

/// A browser with one tab, whose page writes down the keys that it gets, as "key/code/number/text".
class KeyedBrowser final : public BrowserDriver {
public:
  bool pageHasKeyboard = true;
  bool isReachable = true;
  Deeds keys;
  std::size_t looks = 0;

  bool isRunning() override { return true; }
  std::shared_ptr<const BrowserSnapshot> snapshot(const CallLimits&) override {
    ++looks;
    if (!isReachable)
      throw platform::failure(DriverFault::notAccepting, "Chromium");
    BrowserSnapshot snapshot;
    WindowState& window = snapshot.windows.emplace_back();
    window.tabs.emplace_back().id = 2;
    window.activeTabIndex = 1;
    return std::make_shared<const BrowserSnapshot>(snapshot);
  }
  boost::json::value evaluate(TabID, const std::string&, const CallLimits&) override { return nullptr; }
  std::int64_t perform(const BrowserCommand& command, const CallLimits&) override {
    const auto& played = std::get<PlayKeys>(command);
    if (!played.hasKeyboard && !pageHasKeyboard)
      return 0;
    for (const PageKey& key : played.keys)
      keys.push_back(fmt::format("{}/{}/{}/{}{}", key.key, key.code, key.keyCode, key.text,
                                 played.modifiers.control ? "+ctrl" : ""));
    return 1;
  }
};

class PageKeys : public testing::Test {
protected:
  enum class Where { window, headless, nowhere };
  /// Plays by a keyboard that knows nothing yet.
  template <class Play>
  void with(Where where, Play play) {
    PageKeyboard keyboard(display, [&]() -> std::optional<PageKeyboard::FrontBrowser> {
      if (where == Where::nowhere)
        return std::nullopt;
      return PageKeyboard::FrontBrowser{browser, where == Where::window};
    });
    browser->keys.clear();
    display.deeds.clear();
    play(keyboard);
  }

  testsupport::ModelWorkspace display;
  std::shared_ptr<KeyedBrowser> browser = std::make_shared<KeyedBrowser>();
  static constexpr platform::Key f13{.symbol = 0xffca, .position = 183}, f5{.symbol = 0xffc2};
};

TEST_F(PageKeys, GoToThePageThatHasTheKeyboard) {
  with(Where::window, [&](PageKeyboard& keyboard) {
    keyboard.type("aB\n", {}, {});
    keyboard.type("ü世", {}, {});
    keyboard.press(f13, {.shift = true}, {});
  });
  EXPECT_THAT(browser->keys, ElementsAre("a/KeyA/65/a", "B/KeyB/66/B", "Enter/Enter/13/\r", "//0/ü世", "F13/F13/124/"));
  EXPECT_EQ(display.deeds, Deeds{});
}

TEST_F(PageKeys, GoToTheDisplayWhenTheyAreNotThePages) {
  const auto isDisplays = [&](Where where, const char* deed) {
    with(where, [&](PageKeyboard& keyboard) { keyboard.type("x", {}, {}); });
    EXPECT_THAT(display.deeds, ElementsAre(deed));
    EXPECT_EQ(browser->keys, Deeds{});
  };
  isDisplays(Where::nowhere, "type x");
  browser->pageHasKeyboard = false; // the address bar has it
  isDisplays(Where::window, "type x");
  browser->pageHasKeyboard = true;
  browser->isReachable = false;
  isDisplays(Where::window, "type x");
}

TEST_F(PageKeys, ThatBrowsersActOnGoToTheDisplay) {
  with(Where::window, [&](PageKeyboard& keyboard) {
    keyboard.type("t", {.control = true}, {});
    keyboard.press(f5, {}, {});
    keyboard.type("a", {.shift = true}, {});
    keyboard.hold({.control = true});
    keyboard.type("c", {}, {});
    keyboard.release({.control = true});
    keyboard.type("d", {}, {});
  });
  EXPECT_THAT(display.deeds, ElementsAre("type t control", "key ffc2", "type a shift", "type c"));
  EXPECT_THAT(browser->keys, ElementsAre("d/KeyD/68/d"));
}

TEST_F(PageKeys, AreAimedAnewAfterAMomentAndAfterKeysOfTheDisplay) {
  const auto clock = std::make_shared<testsupport::SteppedDeadlines>();
  const CallLimits limits = testsupport::SteppedDeadlines::limits(clock);
  const auto type = [&](PageKeyboard& keyboard, std::size_t looks) {
    keyboard.type("x", {}, limits);
    EXPECT_EQ(browser->looks, looks);
  };
  with(Where::window, [&](PageKeyboard& keyboard) {
    type(keyboard, 1);
    type(keyboard, 1);
    clock->advance(std::chrono::milliseconds(60));
    type(keyboard, 2);
    keyboard.press(f5, {}, limits);
    type(keyboard, 3);
  });
}

TEST_F(PageKeys, AllGoToThePageOfABrowserWithoutWindows) {
  browser->pageHasKeyboard = false; // it says so, but nothing else could have it
  with(Where::headless, [&](PageKeyboard& keyboard) {
    keyboard.type("a", {.control = true}, {});
    keyboard.press(f5, {}, {});
    keyboard.hold({.control = true});
    keyboard.type("b", {}, {});
    keyboard.release({.control = true});
    keyboard.type("c", {}, {});
  });
  EXPECT_THAT(browser->keys, ElementsAre("a/KeyA/65/a+ctrl", "F5/F5/116/", "b/KeyB/66/b+ctrl", "c/KeyC/67/c"));
  EXPECT_EQ(display.deeds, Deeds{});
  browser->isReachable = false;
  with(Where::headless, [&](PageKeyboard& keyboard) { EXPECT_THROW(keyboard.type("a", {}, {}), DriverFailure); });
}

} // namespace
} // namespace tabwright::scripting
