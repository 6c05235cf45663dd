// The programs and results of the actions on windows and on the browser itself, and the filters of lists of windows.
// The effects of their programs are tried in WindowEffectTests.
#include "support/ActionBench.h"
#include "support/FailureText.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace tabwright::actions {
namespace {

using Steps = std::vector<std::string>;
using host::ParameterTexts;
using testsupport::failureText;

constexpr const char* chromium = "org.chromium.chromium";
constexpr const char* brave = "com.brave.browser";
constexpr const char* safari = "com.apple.safari";

// A window's record with one tab.
std::string record(const std::string& id, const std::string& title, const std::string& more = "") {
  const std::string tab = R"({"tabID": "1", "tabTitle": "News", "tabURL": "https://news.test/"})";
  return R"({"activeTab": )" + tab + R"(, "activeTabIndex": 1, "windowID": ")" + id +
         R"(", "windowIndex": 1, "windowTitle": ")" + title + R"(", "tabsList": [)" + tab + "]" + more + "}";
}

class WindowActions : public testing::Test {
protected:
  WindowActions() { bench.payload = record("4", "News"); }

  testsupport::ActionBench bench;
};

TEST_F(WindowActions, TheFrontmostBrowserHasNoKeptNamesEvenIfItIsSafari) {
  bench.frontmostID = safari;
  bench.probe.installed.insert("safari");
  bench.perform("CreateWindow", {{"name", "Work"}});
  EXPECT_TRUE(bench.windowNames.kept.empty());
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
    EXPECT_NO_THROW(bench.perform("CreateWindow", {{"targetContext", "safari"}, {"newURL", none}})) << "no URL";
}

TEST_F(WindowActions, ClosingAWindowLeavesItsNameToTheNextList) {
  bench.windowNames.kept = {{"com.apple.safari:4", "Work"}};
  bench.perform("CloseWindow", {{"targetWindow", R"({"targetContext":"safari","fullID":"com.apple.safari:4"})"}});
  EXPECT_EQ(bench.windowNames.kept.size(), 1U);
  bench.payload = "[]";
  bench.perform("GetListOfWindows", {{"targetContext", "safari"}});
  EXPECT_TRUE(bench.windowNames.kept.empty());
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
    const boost::json::value windows = list(std::move(parameters));
    for (const boost::json::value& window : windows.as_array()) {
      const std::string fullID(window.at("fullID").as_string());
      text += (text.empty() ? "" : " ") + fullID.substr(fullID.find(':') + 1);
    }
    return text;
  }
};

TEST_F(ListsOfWindows, AreFilteredByPrivacyVisibilityAndTitle) {
  EXPECT_EQ(ids({{"privacyFilter", "standard"}}), "1 3");
  EXPECT_EQ(ids({{"privacyFilter", "incognito"}}), "2 4");
  EXPECT_EQ(ids({{"visibilityFilter", "visible"}}), "1 2");
  EXPECT_EQ(ids({{"visibilityFilter", "hidden"}}), "3 4");
  EXPECT_EQ(ids({{"titleFilter", "contains"}, {"title", "NEWS"}}), "1 3 4");
  EXPECT_EQ(ids({{"titleFilter", "equals"}, {"title", "News"}}), "1 4");
  EXPECT_EQ(ids({{"titleFilter", "containsCaseSensitive"}, {"title", "news"}, {"visibilityFilter", "hidden"}}), "3");
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
