// The programs of the actions on tabs, run in the interpreter against a browser in memory, in both families.
#include "support/InterpretedActionBench.h"

#include <boost/json/array.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace tabwright::actions {
namespace {

using host::ParameterTexts;
using scripting::WindowMode;

class TabEffects : public testing::TestWithParam<std::string>, protected testsupport::InterpretedActionBench {
protected:
  TabEffects() {
    world.browser->addWindow({{"A", "https://a.test/"}, {"B \"q\" \\", "https://b.test/"}}); // 101 with tabs 1 and 2
    world.browser->addWindow({{"P", "https://p.test/"}}, WindowMode::incognito);             // 102 with tab 3
    world.browser->page = [this](scripting::TabID tab, const std::string& javascript) {
      evaluated = {tab, javascript};
      return boost::json::value(javascript.find("readyState") != std::string::npos ? readyState : "x");
    };
  }

  static bool isChromium() { return GetParam() == "chromium"; }
  static std::string browserID() { return isChromium() ? "org.chromium.chromium" : "com.apple.safari"; }

  // A tab by its id for scripts, and as a parameter.
  static std::string nativeID(int tab) {
    return isChromium() ? std::to_string(tab) : tab < 3 ? "101:" + std::to_string(tab) : "102:1";
  }
  static std::string tab(const std::string& native) {
    return R"({"targetContext":")" + GetParam() + R"(","fullID":")" + browserID() + ":" + native + "\"}";
  }
  static std::string window(const std::string& native) { return tab(native); }

  boost::json::value run(const std::string& action, ParameterTexts parameters) {
    parameters.emplace_back("targetContext", GetParam());
    return perform(action, std::move(parameters));
  }
  std::string failure(const std::string& action, ParameterTexts parameters) {
    parameters.emplace_back("targetContext", GetParam());
    return failureOf(action, std::move(parameters));
  }

  void closeAllWindows() {
    world.browser->change([](auto& windows) { windows.clear(); });
  }

  std::string titles(std::size_t windowIndex) {
    std::string text;
    const std::vector<scripting::WindowState> windows = world.browser->windows();
    for (const scripting::TabState& each : windows.at(windowIndex).tabs)
      text += "[" + each.title + "]";
    return text;
  }

  std::pair<scripting::TabID, std::string> evaluated;
  std::string readyState = "complete";
};

TEST_P(TabEffects, CreateTabMakesOneWhereItShould) {
  boost::json::value made = run("CreateTab", {});
  EXPECT_EQ(titles(0), "[A][B \"q\" \\][New Tab]");
  EXPECT_EQ(made.at("fullID"), boost::json::value(browserID() + ":" + (isChromium() ? "4" : "101:3")));
  EXPECT_EQ(made.at("isPrivate"), false);

  made = run("CreateTab", {{"windowType", "specificWindow"}, {"targetWindow", window("102")}});
  EXPECT_EQ(titles(1), "[P][New Tab]");
  EXPECT_EQ(made.at("isPrivate"), true);

  made = run("CreateTab", {{"windowType", "newWindow"}});
  EXPECT_EQ(world.browser->windows().size(), 3U);
  EXPECT_EQ(made.at("fullID"), boost::json::value(browserID() + ":" + (isChromium() ? "6" : "103:1")));
}

TEST_P(TabEffects, CreateTabNeedsAWindowUnlessItMakesOne) {
  closeAllWindows();
  EXPECT_EQ(failure("CreateTab", {}), "noOpenWindows");
  EXPECT_EQ(failure("CreateTab", {{"windowType", "specificWindow"}, {"targetWindow", window("101")}}),
            "windowNotFound");
  EXPECT_EQ(world.browser->commands().size(), 0U);
  EXPECT_EQ(run("CreateTab", {{"windowType", "newWindow"}}).at("title"), "New Tab");
}

TEST_P(TabEffects, CloseTabReportsTheTabAsItWas) {
  boost::json::value closed = run("CloseTab", {});
  EXPECT_EQ(closed.at("title"), "A");
  EXPECT_EQ(closed.at("url"), "https://a.test/");
  EXPECT_EQ(closed.at("fullID"), boost::json::value(browserID() + ":0"));
  EXPECT_EQ(titles(0), "[B \"q\" \\]");

  closed = run("CloseTab", {{"tabSelection", "specificTab"}, {"targetTab", tab(nativeID(3))}});
  EXPECT_EQ(closed.at("title"), "P");
  EXPECT_EQ(closed.at("isPrivate"), true);
  EXPECT_EQ(closed.at("fullID"), boost::json::value(browserID() + ":0"));
  EXPECT_EQ(world.browser->windows().size(), 1U);
}

TEST_P(TabEffects, FocusTabBringsTabWindowAndBrowserToTheFront) {
  world.browser->change([](auto& windows) { std::swap(windows[0], windows[1]); });
  const boost::json::value focused = perform("FocusTab", {{"targetTab", tab(nativeID(2))}});
  EXPECT_EQ(focused.at("title"), "B \"q\" \\");
  EXPECT_EQ(focused.at("fullID"), boost::json::value(browserID() + ":" + nativeID(2)));
  EXPECT_EQ(world.browser->windows()[0].id, 101);
  EXPECT_EQ(world.browser->windows()[0].activeTabIndex, 2U);
  EXPECT_EQ(world.browser->commands().back(), "activate");
}

TEST_P(TabEffects, OpenInTabOpensAndShowsTheURLForATitle) {
  const std::string url = "https://n.test/it's?q=%22{}";
  const auto open = [&](const std::string& selection, const std::string& parameter, const std::string& value) {
    ParameterTexts parameters{{"newURL", url}, {"targetSelection", selection}, {"pauseAfterSucessInSeconds", "p05"}};
    if (!parameter.empty())
      parameters.emplace_back(parameter, value);
    const boost::json::value opened = run("OpenInTab", parameters);
    EXPECT_EQ(opened.at("title"), boost::json::value(url)) << selection;
    EXPECT_EQ(opened.at("url"), boost::json::value(url)) << selection;
    EXPECT_EQ(actions.steps.back(), "sleep 0.5") << selection;
    const std::string fullID(opened.at("fullID").as_string());
    return fullID.substr(fullID.find(':') + 1);
  };
  EXPECT_EQ(open("frontTab", "", ""), nativeID(1));
  EXPECT_EQ(world.browser->commands().back(), "navigate 1 " + url);
  EXPECT_EQ(open("specificTab", "targetTab", tab(nativeID(3))), nativeID(3));
  EXPECT_EQ(world.browser->commands().back(), "navigate 3 " + url);
  EXPECT_EQ(open("newTabInFrontWindow", "", ""), isChromium() ? "4" : "101:3");
  EXPECT_EQ(world.browser->windows()[0].tabs.at(2).url, url);
  EXPECT_EQ(open("newTabInWindow", "targetWindow", window("102")), isChromium() ? "5" : "102:2");
  EXPECT_EQ(world.browser->windows()[1].tabs.at(1).url, url);
}

TEST_P(TabEffects, GetDetailsOfTabReadsThePage) {
  boost::json::value details = run("GetDetailsOfTab", {});
  EXPECT_EQ(details.at("title"), "A");
  for (const char* property : {"htmlDocument", "textContent", "selectionText"})
    EXPECT_EQ(details.at(property), "x") << property;
  details = run("GetDetailsOfTab", {{"tabSelection", "specificTab"}, {"targetTab", tab(nativeID(2))}});
  EXPECT_EQ(details.at("title"), "B \"q\" \\");
  // Safari's version is read from the front tab after that; a browser of the Chromium family has told its own.
  EXPECT_EQ(evaluated.first, isChromium() ? 2 : 1);
}

TEST_P(TabEffects, WaitForTabToFinishLoadingTellsWhetherItDid) {
  const ParameterTexts second{{"tabSelection", "specificTab"}, {"targetTab", tab(nativeID(2))}};
  ParameterTexts secondComplete = second;
  secondComplete.emplace_back("readyState", "complete");
  struct Case {
    const char* state;
    bool isInteractive;
    bool isComplete;
  };
  for (const Case& one :
       {Case{"loading", false, false}, Case{"interactive", true, false}, Case{"complete", true, true}}) {
    readyState = one.state;
    EXPECT_EQ(run("WaitForTabToFinishLoading", {}), boost::json::value(one.isInteractive)) << one.state;
    EXPECT_EQ(run("WaitForTabToFinishLoading", secondComplete), boost::json::value(one.isComplete)) << one.state;
  }
}

TEST_P(TabEffects, TabsThatAreGoneAreNamed) {
  const std::string gone = tab(isChromium() ? "77" : "101:7");
  try {
    actions.perform("FocusTab", {{"targetTab", gone}});
    ADD_FAILURE();
  } catch (const platform::Failure& failure) {
    ASSERT_TRUE(failure.cause());
    EXPECT_THAT(failure.cause()->sentence,
                testing::AllOf(testing::StartsWith("No tab "), testing::HasSubstr(isChromium() ? ":77 " : ":101:7 "),
                               testing::EndsWith(" is open. GetListOfTabs lists those that are.")));
  }
}

TEST_P(TabEffects, TabsThatAreGoneAreNotFound) {
  const std::string gone = tab(isChromium() ? "77" : "101:7");
  const std::string goneWithItsWindow = tab(isChromium() ? "78" : "999:1");
  for (const std::string& reference : {gone, goneWithItsWindow}) {
    const ParameterTexts chosen{{"tabSelection", "specificTab"}, {"targetTab", reference}};
    for (const char* action : {"CloseTab", "ReloadTab", "GetDetailsOfTab", "WaitForTabToFinishLoading"})
      EXPECT_EQ(failure(action, chosen), "tabNotFound") << action;
    EXPECT_EQ(failureOf("FocusTab", {{"targetTab", reference}}), "tabNotFound");
    EXPECT_EQ(failure("OpenInTab",
                      {{"newURL", "https://n.test/"}, {"targetSelection", "specificTab"}, {"targetTab", reference}}),
              "tabNotFound");
  }
  EXPECT_EQ(
      failure("OpenInTab",
              {{"newURL", "https://n.test/"}, {"targetSelection", "newTabInWindow"}, {"targetWindow", window("999")}}),
      "windowNotFound");
  EXPECT_EQ(world.browser->commands().size(), 0U);
}

TEST_P(TabEffects, WithoutWindowsThereIsNothingToWorkOn) {
  closeAllWindows();
  for (const char* action : {"CloseTab", "ReloadTab", "GetDetailsOfTab", "WaitForTabToFinishLoading"}) {
    EXPECT_EQ(failure(action, {}), "noOpenWindows") << action;
    EXPECT_EQ(failure(action, {{"tabSelection", "specificTab"}, {"targetTab", tab(nativeID(1))}}), "noOpenWindows");
  }
  EXPECT_EQ(failureOf("FocusTab", {{"targetTab", tab(nativeID(1))}}), "noOpenWindows");
  EXPECT_EQ(failure("OpenInTab", {{"newURL", "https://n.test/"}}), "noOpenWindows");
  EXPECT_EQ(run("GetListOfTabs", {}), boost::json::value(boost::json::array{}));
}

INSTANTIATE_TEST_SUITE_P(Families, TabEffects, testing::Values("chromium", "safari"),
                         [](const auto& family) { return family.param; });

} // namespace
} // namespace tabwright::actions
