// What the actions on windows and on the browser itself declare, ask for and run, and how lists of windows are
// filtered. What the programs do is tried in WindowEffectTests.
#include "engine/AppleScriptSnippets.h"
#include "support/ActionBench.h"
#include "support/ActionProgram.h"
#include "support/FailureText.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace tabwright::actions {
namespace {

using Steps = std::vector<std::string>;
using engine::AppleScriptSnippets;
using host::ParameterTexts;
using testsupport::failureText;

constexpr const char* chromium = "org.chromium.chromium";
constexpr const char* brave = "com.brave.browser";
constexpr const char* safari = "com.apple.safari";
constexpr const char* braveWindow = R"({"targetContext":"brave","fullID":"com.brave.browser:4"})";

// A window's record with one tab.
std::string record(const std::string& id, const std::string& title, const std::string& more = "") {
  const std::string tab = R"({"tabID": "1", "tabTitle": "News", "tabURL": "https://news.test/"})";
  return R"({"activeTab": )" + tab + R"(, "activeTabIndex": 1, "windowID": ")" + id +
         R"(", "windowIndex": 1, "windowTitle": ")" + title + R"(", "tabsList": [)" + tab + "]" + more + "}";
}

class WindowActions : public testing::Test {
protected:
  WindowActions() { bench.payload = record("4", "News"); }

  // Expects an action to run one program of these lines against the browser.
  void expectRun(const std::string& action, const ParameterTexts& parameters, const std::string& browserID,
                 const std::string& body) {
    bench.scripts.clear();
    bench.perform(action, parameters);
    ASSERT_EQ(bench.scripts.size(), 1U) << action;
    EXPECT_EQ(bench.scripts[0], testsupport::programOf(bench.scriptServices, body, browserID)) << action;
  }

  testsupport::ActionBench bench;
};

TEST_F(WindowActions, CreateWindowMakesAWindowOfTheFamilyWithModeAndName) {
  const auto body = [](const std::string& mode, const std::string& name, const std::string& urlLine) {
    return "set nativeWindow to make window with properties {   mode: \"" + mode + "\",   given name: \"" + name +
           "\" }\ndelay 0.2\n" + urlLine + "\nreturn success(my makeBrowserWindowData(nativeWindow))";
  };
  expectRun("CreateWindow", {{"targetContext", "brave"}}, brave, body("normal", "", ""));
  expectRun(
      "CreateWindow",
      {{"targetContext", "brave"},
       {"windowType", "privateWindow"},
       {"name", R"( My "own" C:\n )"},
       {"newURL", "https://a.test/'x'"}},
      brave,
      body("incognito", R"( My \"own\" C:\n )", "set URL of first tab in nativeWindow to \"https://a.test/'x'\""));
  EXPECT_TRUE(bench.windowNames.kept.empty());
}

TEST_F(WindowActions, CreateWindowTakesTheFrontmostBrowserForOneOfTheFamilyEvenIfItIsSafari) {
  bench.frontmostID = safari;
  bench.probe.installed.insert("safari");
  expectRun("CreateWindow", {{"name", "Work"}}, safari,
            "set nativeWindow to make window with properties {   mode: \"normal\",   given name: \"Work\" }\n"
            "delay 0.2\n\nreturn success(my makeBrowserWindowData(nativeWindow))");
  EXPECT_TRUE(bench.windowNames.kept.empty());
}

TEST_F(WindowActions, CreateWindowMakesDocumentsInSafari) {
  expectRun("CreateWindow", {{"targetContext", "safari"}}, safari,
            "activate\nmake document\nreturn success(my makeBrowserWindowData(front window))");
  expectRun("CreateWindow", {{"targetContext", "safari"}, {"newURL", "https://a.test/"}}, safari,
            "activate\nmake document with properties {URL: \"https://a.test/\"}\n"
            "return success(my makeBrowserWindowData(front window))");
  EXPECT_TRUE(bench.windowNames.kept.empty());
}

TEST_F(WindowActions, CreateWindowGoesToSafarisMenuForAPrivateWindow) {
  const auto body = [](const std::string& urlLine) {
    return "activate\nif my __createPrivateWindow() then\n  delay 0.4\n"
           "set {FRONT_WINDOW, FRONT_WINDOW_ID, FRONT_TAB, FRONT_TAB_ID} to my getFrontVars()\n" +
           urlLine + "\n  return success(my makeBrowserWindowData(FRONT_WINDOW))\nend if";
  };
  expectRun("CreateWindow", {{"targetContext", "safari"}, {"windowType", "privateWindow"}}, safari, body(""));
  expectRun("CreateWindow",
            {{"targetContext", "safari"}, {"windowType", "privateWindow"}, {"newURL", "https://a.test/"}}, safari,
            body("set URL of FRONT_TAB to \"https://a.test/\""));
}

TEST_F(WindowActions, CreateWindowKeepsTheNamesOfSafarisWindows) {
  for (const char* type : {"standardWindow", "privateWindow"}) {
    const boost::json::value window =
        bench.perform("CreateWindow", {{"targetContext", "safari"}, {"windowType", type}, {"name", R"(My "own" \)"}});
    EXPECT_EQ(window.at("windowTitle"), "News") << "the name shows in lists only";
    EXPECT_EQ(bench.windowNames.kept, (std::map<std::string, std::string>{{"com.apple.safari:4", R"(My "own" \)"}}));
    bench.windowNames.kept.clear();
  }
  bench.perform("CreateWindow", {{"targetContext", "safari"}, {"name", ""}});
  EXPECT_TRUE(bench.windowNames.kept.empty());

  bench.services.windowNames = nullptr;
  EXPECT_NO_THROW(bench.perform("CreateWindow", {{"targetContext", "safari"}, {"name", "Work"}}));
}

TEST_F(WindowActions, CreateWindowCountsBeforeItAsksForAUsableURL) {
  for (const char* url : {"ftp://host", "https://a.test/ ", R"(http://a/" & (do shell script "x") & ")"}) {
    bench.steps.clear();
    EXPECT_EQ(failureText([&] { return bench.perform("CreateWindow", {{"newURL", url}}); }),
              "newURL needs a value. What is the URL?");
    EXPECT_EQ(bench.steps, (Steps{"schedule", "count"}));
  }
  for (const char* none : {"", " \n\u00A0"})
    expectRun("CreateWindow", {{"targetContext", "safari"}, {"newURL", none}}, safari,
              "activate\nmake document\nreturn success(my makeBrowserWindowData(front window))");
}

TEST_F(WindowActions, CreateWindowPausesWhenItHasMadeOne) {
  bench.perform("CreateWindow", {{"pauseAfterSucessInSeconds", "p05"}});
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "frontmost lookup", "run", "sleep 0.5"}));
  bench.failureNumber = 0;
  EXPECT_THROW(bench.perform("CreateWindow", {{"targetContext", "safari"}, {"pauseAfterSucessInSeconds", "p05"}}),
               platform::Failure);
  EXPECT_EQ(bench.steps.back(), "run");
}

TEST_F(WindowActions, GivenWindowsAreFoundInTheirOwnBrowser) {
  const std::string check = AppleScriptSnippets::requestedWindowCheck("4") + "\n";
  expectRun("CloseWindow", {{"targetWindow", braveWindow}}, brave,
            check + "set windowData to my makeBrowserWindowData(REQUESTED_WINDOW)\nclose REQUESTED_WINDOW\n\n"
                    "return success(windowData)");
  expectRun("FocusWindow", {{"targetWindow", braveWindow}}, brave,
            check + "set index of REQUESTED_WINDOW to 1\nactivate\n\n"
                    "return success(my makeBrowserWindowData(REQUESTED_WINDOW))");
  for (const char* action : {"CloseWindow", "FocusWindow"})
    EXPECT_EQ(failureText([&] { return bench.perform(action, {}); }),
              "targetWindow needs a value. Which window? Give one that another action returned.");
}

TEST_F(WindowActions, ClosingAWindowLeavesItsNameToTheNextList) {
  bench.windowNames.kept = {{"com.apple.safari:4", "Work"}};
  bench.perform("CloseWindow", {{"targetWindow", R"({"targetContext":"safari","fullID":"com.apple.safari:4"})"}});
  EXPECT_EQ(bench.windowNames.kept.size(), 1U);
  bench.payload = "[]";
  bench.perform("GetListOfWindows", {{"targetContext", "safari"}});
  EXPECT_TRUE(bench.windowNames.kept.empty());
}

TEST_F(WindowActions, GetFrontmostWindowRunsItsLines) {
  bench.windowNames.kept = {{"com.apple.safari:4", "Work"}};
  expectRun("GetFrontmostWindow", {{"targetContext", "safari"}}, safari,
            AppleScriptSnippets::openWindowsCheck() + "\nreturn success(my makeBrowserWindowData(front window))");
  const boost::json::value window = bench.perform("GetFrontmostWindow", {{"targetContext", "safari"}});
  EXPECT_EQ(window.at("windowTitle"), "News");
  EXPECT_EQ(window.at("fullID"), "com.apple.safari:4");
}

class ListsOfWindows : public WindowActions {
protected:
  ListsOfWindows() {
    bench.payload = "[" + record("1", "News", R"(, "isVisible": true)") + "," +
                    record("2", "Mail", R"(, "isVisible": true, "isPrivate": true)") + "," + record("3", "Old news") +
                    "," + record("4", "News", R"(, "isPrivate": true)") + "]";
  }

  boost::json::value list(ParameterTexts parameters) {
    return bench.perform("GetListOfWindows", std::move(parameters));
  }

  // The native ids of the windows found, such as "1 3".
  std::string ids(ParameterTexts parameters) {
    std::string text;
    for (const boost::json::value& window : list(std::move(parameters)).as_array()) {
      const std::string fullID(window.at("fullID").as_string());
      text += (text.empty() ? "" : " ") + fullID.substr(fullID.find(':') + 1);
    }
    return text;
  }
};

TEST_F(ListsOfWindows, AreMadeInOneRoundTrip) {
  expectRun("GetListOfWindows", {}, chromium, "return success(my getListOfWindows())");
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "frontmost lookup", "run"}));
  EXPECT_EQ(ids({}), "1 2 3 4");
  bench.payload = "[]";
  EXPECT_EQ(ids({{"listElements", "first"}}), "");
}

TEST_F(ListsOfWindows, AreFilteredByPrivacyVisibilityAndTitle) {
  EXPECT_EQ(ids({{"privacyFilter", "standard"}}), "1 3");
  EXPECT_EQ(ids({{"privacyFilter", "incognito"}}), "2 4");
  EXPECT_EQ(ids({{"visibilityFilter", "visible"}}), "1 2");
  EXPECT_EQ(ids({{"visibilityFilter", "hidden"}}), "3 4");
  EXPECT_EQ(ids({{"titleFilter", "contains"}, {"title", "NEWS"}}), "1 3 4");
  EXPECT_EQ(ids({{"titleFilter", "equals"}, {"title", "News"}}), "1 4");
  EXPECT_EQ(ids({{"titleFilter", "containsCaseSensitive"}, {"title", "news"}, {"visibilityFilter", "hidden"}}), "3");
  EXPECT_EQ(ids({{"title", "Mail"}}), "1 2 3 4") << "the text of a filter that is off";
  EXPECT_EQ(failureText([&] { return list({{"titleFilter", "equals"}}); }),
            "title needs a value. Which value is meant for “Title”?");
}

TEST_F(ListsOfWindows, AreSelectedFromAfterFiltering) {
  EXPECT_EQ(ids({{"listElements", "first"}, {"visibilityFilter", "hidden"}}), "3");
  EXPECT_EQ(ids({{"listElements", "last"}, {"privacyFilter", "standard"}}), "3");
  EXPECT_EQ(ids({{"listElements", "random"}, {"titleFilter", "equals"}, {"title", "Mail"}}), "2");
  EXPECT_EQ(ids({{"listElements", "random"}, {"titleFilter", "equals"}, {"title", "none"}}), "");
  std::set<std::string> seen;
  for (int round = 0; round < 500 && seen.size() < 2; ++round)
    seen.insert(ids({{"listElements", "random"}, {"visibilityFilter", "visible"}, {"targetContext", "chromium"}}));
  EXPECT_EQ(seen, (std::set<std::string>{"1", "2"}));
}

TEST_F(ListsOfWindows, ShowTheNamesOfSafarisWindowsAndForgetThoseThatAreGone) {
  const std::map<std::string, std::string> kept{
      {"com.apple.safari:2", "Post"}, {"com.apple.safari:4", "Work"}, {"com.apple.safari:9", "Gone"}};
  bench.windowNames.kept = kept;
  EXPECT_EQ(list({{"targetContext", "chromium"}}).at(3).at("windowTitle"), "News");
  bench.frontmostID = safari;
  bench.probe.installed.insert("safari");
  EXPECT_EQ(list({}).at(3).at("windowTitle"), "News") << "the frontmost browser has no names, whichever it is";
  EXPECT_EQ(bench.windowNames.kept, kept);

  EXPECT_EQ(list({{"targetContext", "safari"}}).at(3).at("windowTitle"), "Work");
  EXPECT_EQ(ids({{"targetContext", "safari"}, {"titleFilter", "equals"}, {"title", "News"}}), "1")
      << "the name is compared, not the title";
  EXPECT_EQ(bench.windowNames.kept.size(), 2U) << "windows that a filter hides are not gone";

  bench.services.windowNames = nullptr;
  EXPECT_EQ(list({{"targetContext", "safari"}}).at(3).at("windowTitle"), "News");
}

TEST_F(WindowActions, ABrowserReferenceIsLookedForOnlyWhenItIsTheFrontmost) {
  EXPECT_EQ(bench.perform("GetBrowserReference", {}), (boost::json::value{{"id", chromium}, {"name", "Chromium"}}));
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "frontmost lookup"}));

  bench.steps.clear();
  const std::string mine = R"({"id":"com.brave.browser","name":"My Brave"})";
  EXPECT_EQ(bench.perform("GetBrowserReference", {{"targetContext", mine}}),
            (boost::json::value{{"id", brave}, {"name", "My Brave"}}));
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count"}));

  bench.frontmostID = "org.gnome.terminal";
  EXPECT_EQ(failureText([&] { return bench.perform("GetBrowserReference", {}); }),
            "The currently active app is not a supported browser");
}

} // namespace
} // namespace tabwright::actions
