// The programs of the actions on windows, run in the interpreter against a browser in memory, in both families.
#include "support/InterpretedActionBench.h"

#include <boost/json/array.hpp>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::actions {
namespace {

using host::ParameterTexts;
using scripting::WindowMode;
using Commands = std::vector<std::string>;

class WindowEffects : public testing::TestWithParam<std::string>, protected testsupport::InterpretedActionBench {
protected:
  WindowEffects() {
    world.browser->addWindow({{"A", "https://a.test/"}, {"B", "https://b.test/"}}); // 101
    world.browser->addWindow({{"P", "https://p.test/"}}, WindowMode::incognito);    // 102
    world.browser->page = [](scripting::TabID, const std::string&) { return boost::json::value("156"); };
    world.desktop->menus = {{{}, {{"Safari", true, true}, {"Ablage", true, true}}},
                            {{1}, {{"Neues Fenster", true, false}, {"Neues privates Fenster", true, false}}}};
    world.desktop->onChoose = [this] { world.browser->perform(scripting::MakeWindow{WindowMode::incognito, ""}, {}); };
  }

  static bool isChromium() { return GetParam() == "chromium"; }
  static std::string browserID() { return isChromium() ? "org.chromium.chromium" : "com.apple.safari"; }
  static std::string window(const std::string& native) {
    return R"({"targetContext":")" + GetParam() + R"(","fullID":")" + browserID() + ":" + native + "\"}";
  }

  boost::json::value run(const std::string& action, ParameterTexts parameters) {
    parameters.emplace_back("targetContext", GetParam());
    return perform(action, std::move(parameters));
  }

  scripting::WindowState front() { return world.browser->windows().at(0); }
};

TEST_P(WindowEffects, CreateWindowMakesAStandardWindow) {
  const std::string url = "https://n.test/it's?q=%22{}";
  const boost::json::value made =
      run("CreateWindow", {{"name", R"(My "own" one)"}, {"newURL", url}, {"pauseAfterSucessInSeconds", "p05"}});
  EXPECT_EQ(actions.steps.back(), "sleep 0.5");
  EXPECT_EQ(made.at("fullID"), boost::json::value(browserID() + ":103"));
  EXPECT_EQ(made.at("isPrivate"), false);
  EXPECT_EQ(made.at("activeTab").at("url"), boost::json::value(url));
  EXPECT_EQ(front().tabs.at(0).url, url);
  EXPECT_EQ(front().givenName, isChromium() ? R"(My "own" one)" : "");
  EXPECT_EQ(actions.windowNames.kept.size(), isChromium() ? 0U : 1U);
}

TEST_P(WindowEffects, CreateWindowMakesAPrivateWindow) {
  const boost::json::value made = run("CreateWindow", {{"windowType", "privateWindow"}, {"newURL", "https://n.test/"}});
  EXPECT_EQ(made.at("isPrivate"), true);
  EXPECT_EQ(front().mode, WindowMode::incognito);
  EXPECT_EQ(front().tabs.at(0).url, "https://n.test/");
  EXPECT_EQ(world.desktop->calls, isChromium() ? Commands{} : Commands{"choose 9 1/1"});
}

TEST_P(WindowEffects, CreateWindowWorksWithoutAWindow) {
  world.browser->change([](auto& windows) { windows.clear(); });
  const boost::json::value made = run("CreateWindow", {{"windowType", "privateWindow"}});
  EXPECT_EQ(made.at("fullID"), boost::json::value(browserID() + ":103"));
}

TEST_P(WindowEffects, CreateWindowFailsWhereSafariHasNoSuchMenuItem) {
  if (isChromium())
    GTEST_SKIP() << "the family makes private windows by its dictionary";
  world.desktop->menus[{1}].pop_back();
  EXPECT_EQ(failureOf("CreateWindow", {{"windowType", "privateWindow"}, {"targetContext", "safari"}}),
            "frontAppIsNotABrowser")
      << "what a script without a result comes to";
  EXPECT_EQ(world.browser->windows().size(), 2U);
}

TEST_P(WindowEffects, CloseWindowReportsTheWindowAsItWas) {
  const boost::json::value closed = run("GetFrontmostWindow", {});
  EXPECT_EQ(perform("CloseWindow", {{"targetWindow", window("101")}}), closed);
  EXPECT_EQ(closed.at("windowTitle"), "A");
  EXPECT_EQ(closed.at("tabs").as_array().size(), 2U);
  EXPECT_EQ(world.browser->commands(), Commands{"close window 101"});
}

TEST_P(WindowEffects, FocusWindowBringsWindowAndBrowserToTheFront) {
  const boost::json::value focused = perform("FocusWindow", {{"targetWindow", window("102")}});
  EXPECT_EQ(focused.at("fullID"), boost::json::value(browserID() + ":102"));
  EXPECT_EQ(focused.at("isPrivate"), true);
  EXPECT_EQ(front().id, 102);
  EXPECT_EQ(world.browser->commands(), (Commands{"raise 102", "activate"}));
}

TEST_P(WindowEffects, WindowsThatAreGoneAreNotFound) {
  for (const char* action : {"CloseWindow", "FocusWindow"})
    EXPECT_EQ(failureOf(action, {{"targetWindow", window("999")}}), "windowNotFound") << action;
  EXPECT_EQ(world.browser->commands(), Commands{});
  world.browser->change([](auto& windows) { windows.clear(); });
  EXPECT_EQ(failureOf("GetFrontmostWindow", {{"targetContext", GetParam()}}), "noOpenWindows");
  EXPECT_EQ(run("GetListOfWindows", {}), boost::json::value(boost::json::array{}));
}

TEST_P(WindowEffects, GetListOfWindowsTellsPrivateAndHiddenOnesApart) {
  world.browser->perform(scripting::SetShape{102, scripting::WindowShape::minimized}, {});
  const boost::json::value windows = run("GetListOfWindows", {});
  ASSERT_EQ(windows.as_array().size(), 2U);
  EXPECT_EQ(windows.at(0).at("isPrivate"), false);
  EXPECT_EQ(windows.at(0).at("activeTab").at("title"), "A");
  EXPECT_EQ(windows.at(1).at("isPrivate"), true);
  EXPECT_EQ(run("GetListOfWindows", {{"visibilityFilter", "hidden"}}).at(0), windows.at(1));
  EXPECT_EQ(run("GetListOfWindows", {{"privacyFilter", "standard"}}).as_array().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Families, WindowEffects, testing::Values("chromium", "safari"),
                         [](const testing::TestParamInfo<std::string>& info) { return info.param; });

} // namespace
} // namespace tabwright::actions
