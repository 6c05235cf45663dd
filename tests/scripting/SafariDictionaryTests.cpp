#include "support/ScriptBench.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace tabwright;

class SafariDictionary : public testing::Test, protected testsupport::ScriptBench {
protected:
  SafariDictionary() {
    browser->addWindow({}); // developer tools, which Safari doesn't list
    browser->addWindow({{"A", "https://a.test/"}, {"B", ""}});
    browser->addWindow({{"C", "https://c.test/"}});
  }
};

TEST_F(SafariDictionary, NamesTabsByPositionAndWindowsByNumber) {
  EXPECT_EQ(safari("id of windows"), "{102, 103}");
  EXPECT_EQ(safari("index of windows"), "{1, 2}");
  EXPECT_EQ(safari("name of window id \"102\""), R"("A")");
  EXPECT_EQ(safari("current tab of front window"), "tab 1 of window id 102");
  EXPECT_EQ(safari("tabs of window 1"), "{tab 1 of window id 102, tab 2 of window id 102}");
  EXPECT_EQ(safari("set i to \"2\"\nset t to tab index i of window 1\nreturn {index of t, name of t}"), R"({2, "B"})");
  EXPECT_EQ(safari("URL of tabs of window 1"), R"({"https://a.test/", missing value})");
  EXPECT_EQ(safari("URL of tab 3 of window 1"), "error -1728: Safari got an error: Can’t get tab 3 of window 1.");
  EXPECT_EQ(safari("mode of window 1").substr(0, 5), "error"); // the word is not in this dictionary
}

TEST_F(SafariDictionary, ShowsAWindowThatIsClosingWithoutCurrentTab) {
  browser->change([](auto& windows) { windows[1].activeTabIndex = 0; });
  EXPECT_EQ(safari("current tab of window 1 is missing value"), "true");
}

TEST_F(SafariDictionary, SetsTheCurrentTab) {
  EXPECT_EQ(
      safari("set t to tab 2 of window 1\nset current tab of window 1 to t\nreturn index of current tab of window 1"),
      "2");
  EXPECT_EQ(safari("set current tab of window 1 to tab 1 of window 2").substr(0, 12), "error -10006");
}

TEST_F(SafariDictionary, MakesDocumentsAndTabs) {
  EXPECT_EQ(safari("make document with properties {URL:\"https://d.test/\"}\ntell front window to return {id, name}"),
            R"({104, "New Tab"})");
  EXPECT_EQ(safari("make tab in window id 102"), "tab 3 of window id 102");
  EXPECT_EQ(safari("set URL of document 1 to \"https://e.test/\"\nreturn URL of current tab of window 1"),
            R"("https://e.test/")");
  EXPECT_EQ(safari("close tab 1 of window id 102\nclose window 1\nreturn name of tabs of window id 102"),
            R"({"B", "New Tab"})");
}

TEST_F(SafariDictionary, RunsJavaScriptInWhateverHasACurrentTab) {
  browser->page = [](scripting::TabID id, const std::string& javascript) {
    return boost::json::value(javascript + " in " + std::to_string(id));
  };
  EXPECT_EQ(safari("do javascript \"x\" in tab 2 of window 1"), R"("x in 2")");
  EXPECT_EQ(safari("do javascript \"x\" in document 2"), R"("x in 3")");
  EXPECT_EQ(safari("tell current tab of front window\nreturn do javascript \"y\"\nend tell"), R"("y in 1")");
  EXPECT_EQ(safari("do javascript \"x\"").substr(0, 11), "error -1715");
}

} // namespace
