// What the actions on tabs declare, ask for and run: programs are compared with the action's lines as they should be.
// What the programs do is tried in TabEffectTests.
#include "engine/AppleScriptSnippets.h"
#include "support/ActionBench.h"
#include "support/ActionProgram.h"
#include "support/FailureText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::actions {
namespace {

using Steps = std::vector<std::string>;
using engine::AppleScriptSnippets;
using host::ParameterTexts;
using testsupport::failureText;

constexpr const char* braveTab = R"({"targetContext":"brave","fullID":"com.brave.browser:8"})";
constexpr const char* safariTab = R"({"targetContext":"safari","fullID":"com.apple.safari:17:3"})";
constexpr const char* braveWindow = R"({"targetContext":"brave","fullID":"com.brave.browser:4"})";
constexpr const char* record =
    R"({"tabID": "8", "tabTitle": "News", "tabURL": "https://news.test/", "isLoading": true, "htmlContent": ""})";

const std::string windowsCheck = AppleScriptSnippets::openWindowsCheck() + "\n";
const std::string frontVariables =
    "set {FRONT_WINDOW, FRONT_WINDOW_ID, FRONT_TAB, FRONT_TAB_ID} to my getFrontVars()\n";
const std::string front = windowsCheck + frontVariables;

std::string lookup(const std::string& id) {
  return windowsCheck + "set tabID to \"" + id +
         "\"\nset nativeObjects to my findNativeTabAndWindowForTabID(tabID)\n"
         "if nativeObjects is missing value or nativeObjects is null then\n  return failure(5)\nend if\n\n";
}

std::string windowLookup(const std::string& id) {
  return AppleScriptSnippets::requestedWindowCheck(id) + "\n";
}

class TabActions : public testing::Test {
protected:
  TabActions() { bench.payload = record; }

  // Expects an action to run one program of these lines against the browser.
  void expectRun(const std::string& action, const ParameterTexts& parameters, const std::string& browserID,
                 const std::string& body, const engine::Scriptacular::Arguments& arguments = {}) {
    bench.scripts.clear();
    bench.perform(action, parameters);
    ASSERT_EQ(bench.scripts.size(), 1U) << action;
    EXPECT_EQ(testsupport::withoutJobNames(bench.scripts[0]),
              testsupport::programOf(bench.scriptServices, body, browserID, arguments))
        << action;
  }

  testsupport::ActionBench bench;
};

constexpr const char* chromium = "org.chromium.chromium";
constexpr const char* brave = "com.brave.browser";
constexpr const char* safari = "com.apple.safari";

TEST_F(TabActions, CreateTabRunsItsLines) {
  expectRun("CreateTab", {{"targetWindow", braveWindow}}, chromium,
            front + "set newTab to my createTabInWindow(FRONT_WINDOW, null)\n"
                    "return success(my makeBrowserTabData(newTab, FRONT_WINDOW, null))");
  expectRun("CreateTab", {{"windowType", "newWindow"}, {"targetContext", "safari"}}, safari,
            "make document\nset newWindow to front window\nset newTab to first item in tabs of newWindow\n"
            "return success(my makeBrowserTabData(newTab, newWindow, null))");
  expectRun("CreateTab", {{"windowType", "specificWindow"}, {"targetWindow", braveWindow}, {"targetContext", "safari"}},
            brave,
            windowLookup("4") + "set newTab to my createTabInWindow(REQUESTED_WINDOW, null)\n"
                                "return success(my makeBrowserTabData(newTab, REQUESTED_WINDOW, null))");
}

TEST_F(TabActions, CloseTabRunsItsLines) {
  expectRun("CloseTab", {{"targetTab", braveTab}}, chromium,
            front + "set tabData to my makeBrowserTabData(FRONT_TAB, FRONT_WINDOW, null)\n"
                    "set tabID of tabData to \"0\"\nclose FRONT_TAB\n\nreturn success(tabData)");
  expectRun("CloseTab", {{"tabSelection", "specificTab"}, {"targetTab", safariTab}}, safari,
            lookup("17:3") + "set {nativeTab, nativeWindow} to nativeObjects\n\n"
                             "set tabData to my makeBrowserTabData(nativeTab, nativeWindow, null)\n"
                             "set tabID of tabData to \"0\"\nclose nativeTab\n\nreturn success(tabData)");
}

TEST_F(TabActions, FocusTabRunsItsLines) {
  expectRun("FocusTab", {{"targetTab", safariTab}}, safari,
            lookup("17:3") + "set {nativeTab, nativeWindow} to nativeObjects\n"
                             "my focusTabAndWindow(nativeTab, nativeWindow)\n\n"
                             "return success(my makeBrowserTabData(nativeTab, nativeWindow, null))");
}

TEST_F(TabActions, ReloadTabRunsItsJob) {
  bench.payload = R"(["res"])";
  expectRun("ReloadTab", {{"targetContext", "safari"}}, safari,
            AppleScriptSnippets::jobForFrontTab("document.location.reload()", 1.0, 0.2));
  expectRun("ReloadTab", {{"tabSelection", "specificTab"}, {"targetTab", braveTab}}, brave,
            AppleScriptSnippets::jobForRequestedTab("com.brave.browser:8", "document.location.reload()", 1.0, 0.2));
}

TEST_F(TabActions, OpenInTabRunsItsLinesWithTheURLBesideThem) {
  const std::string url = "https://a.test/'?q=%22";
  const engine::Scriptacular::Arguments arguments{{"newUrl", url}};
  expectRun("OpenInTab", {{"newURL", url}, {"targetTab", braveTab}, {"targetWindow", braveWindow}}, chromium,
            front + "set URL of FRONT_TAB to newURL\n\n"
                    "set returnValue to my makeBrowserTabData(FRONT_TAB, FRONT_WINDOW, null)\n"
                    "set tabTitle of returnValue to newURL\nreturn success(returnValue)",
            arguments);
  EXPECT_EQ(bench.tasks.events.back().parameters.at(platform::fourCharCode("----")).descriptorAtIndex(1)->stringValue(),
            url);
  expectRun("OpenInTab", {{"newURL", url}, {"targetSelection", "newTabInFrontWindow"}, {"targetContext", "safari"}},
            safari,
            front + "set newTab to my createTabInWindow(front window, newURL)\n\n"
                    "set returnValue to my makeBrowserTabData(newTab, FRONT_WINDOW, null)\n"
                    "set tabTitle of returnValue to newURL\nreturn success(returnValue)",
            arguments);
  expectRun(
      "OpenInTab",
      {{"newURL", url}, {"targetSelection", "newTabInWindow"}, {"targetWindow", braveWindow}, {"targetTab", safariTab}},
      brave,
      windowLookup("4") + "set newTab to my createTabInWindow(REQUESTED_WINDOW, newURL)\n"
                          "set returnValue to my makeBrowserTabData(newTab, REQUESTED_WINDOW, null)\n"
                          "set tabTitle of returnValue to newURL\n\nreturn success(returnValue)",
      arguments);
  expectRun(
      "OpenInTab",
      {{"newURL", url}, {"targetSelection", "specificTab"}, {"targetTab", safariTab}, {"targetWindow", braveWindow}},
      safari,
      lookup("17:3") + "set {nativeTab, nativeWindow} to nativeObjects\n"
                       "set URL of nativeTab to newURL\n"
                       "set returnValue to my makeBrowserTabData(nativeTab, nativeWindow, null)\n"
                       "set tabTitle of returnValue to newURL\n\nreturn success(returnValue)",
      arguments);
}

TEST_F(TabActions, GetDetailsOfTabRunsItsLines) {
  expectRun("GetDetailsOfTab", {}, chromium,
            front + "return success(my makeDetailedBrowserTabDataForID(FRONT_TAB_ID))");
  expectRun("GetDetailsOfTab", {{"tabSelection", "specificTab"}, {"targetTab", safariTab}}, safari,
            windowsCheck + "set tabData to my makeDetailedBrowserTabDataForID(\"17:3\")\n"
                           "if tabData is missing value or tabData is null then\n  return failure(5)\nend if\n\n"
                           "return success(tabData)");
}

TEST_F(TabActions, WaitForTabToFinishLoadingRunsItsLines) {
  for (const char* answer : {"true", "false"}) {
    bench.payload = answer;
    EXPECT_EQ(bench.perform("WaitForTabToFinishLoading", {}), boost::json::value(bench.payload == "true"));
  }
  expectRun("WaitForTabToFinishLoading", {}, chromium,
            front + "return my waitForTabReadyState(FRONT_TAB, \"interactive\")");
  expectRun("WaitForTabToFinishLoading",
            {{"tabSelection", "specificTab"}, {"targetTab", braveTab}, {"readyState", "complete"}}, brave,
            lookup("8") +
                "set {nativeTab} to nativeObjects\n\nreturn my waitForTabReadyState(nativeTab, \"complete\")");
}

TEST_F(TabActions, TabsCarryTheBrowserThatAnswered) {
  const boost::json::value found{{"id", chromium}, {"name", "Chromium"}};
  for (const char* action : {"CreateTab", "CloseTab", "GetDetailsOfTab"}) {
    const boost::json::value tab = bench.perform(action, {});
    EXPECT_EQ(tab.at("targetContext"), found) << action;
    EXPECT_EQ(tab.at("fullID"), "org.chromium.chromium:8") << action;
    EXPECT_EQ(tab.at("isLoading"), true) << action;
  }
  EXPECT_EQ(bench.perform("OpenInTab", {{"newURL", "https://a.test/"}}).at("targetContext"), found);
}

TEST_F(TabActions, FocusTabKeepsTheTabsOwnBrowser) {
  const boost::json::value tab = bench.perform(
      "FocusTab",
      {{"targetTab",
        R"({"targetContext":{"id":"com.brave.browser","name":"My Brave"},"fullID":"com.brave.browser:8"})"}});
  EXPECT_EQ(tab.at("targetContext").at("name"), "My Brave");
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "run"}));
}

TEST_F(TabActions, AskForWhatIsMissingBeforeTheyCount) {
  struct Case {
    const char* action;
    ParameterTexts parameters;
    const char* question;
  };
  const char* const tab = "targetTab needs a value. Which tab? Give one that another action returned.";
  const char* const window = "targetWindow needs a value. Which window? Give one that another action returned.";
  const char* const url = "newURL needs a value. What is the URL?";
  const Case cases[]{
      {"CreateTab", {{"windowType", "specificWindow"}}, window},
      {"CloseTab", {{"tabSelection", "specificTab"}}, tab},
      {"FocusTab", {}, tab},
      {"ReloadTab", {{"tabSelection", "specificTab"}}, tab},
      {"GetDetailsOfTab", {{"tabSelection", "specificTab"}}, tab},
      {"WaitForTabToFinishLoading", {{"tabSelection", "specificTab"}}, tab},
      {"OpenInTab", {}, url},
      {"OpenInTab", {{"newURL", " \n"}}, url},
      {"OpenInTab", {{"newURL", "ftp://host"}}, url},
      {"OpenInTab", {{"newURL", "https://a.test/ "}}, url},
      {"OpenInTab",
       {{"newURL", "https://a.test/"}, {"targetSelection", "specificTab"}, {"targetWindow", braveWindow}},
       tab},
      {"OpenInTab",
       {{"newURL", "https://a.test/"}, {"targetSelection", "newTabInWindow"}, {"targetTab", braveTab}},
       window},
      {"OpenInTab", {{"newURL", "http:"}, {"targetSelection", "specificTab"}}, url}, // the address is asked for first
  };
  for (const Case& one : cases)
    EXPECT_EQ(failureText([&] { return bench.perform(one.action, one.parameters); }), one.question) << one.action;
  EXPECT_EQ(bench.steps, Steps{});
}

TEST_F(TabActions, PauseOnlyAfterASuccess) {
  bench.perform("OpenInTab", {{"newURL", "https://a.test/"}, {"pauseAfterSucessInSeconds", "1.5"}});
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "frontmost lookup", "run", "sleep 1.5"}));

  bench.payload = R"(["whatever"])";
  bench.perform("ReloadTab", {{"targetContext", "brave"}, {"pauseAfterSucessInSeconds", "p40"}});
  EXPECT_EQ(bench.steps.back(), "sleep 4");

  bench.payload = "[]";
  EXPECT_EQ(failureText([&] { return bench.perform("ReloadTab", {{"pauseAfterSucessInSeconds", "p40"}}); }),
            "The JavaScript ended in an exception that nothing caught, the code is likely malformed");
  EXPECT_EQ(bench.steps.back(), "run");
}

} // namespace
} // namespace tabwright::actions
