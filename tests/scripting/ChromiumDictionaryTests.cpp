#include "support/ScriptBench.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace tabwright;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testsupport::ModelBrowser;

/// Windows front to back: 101 (tabs 1 to 3), 102 of the developer tools, 103 incognito (tab 4).
class ChromiumDictionary : public testing::Test, protected testsupport::ScriptBench {
protected:
  ChromiumDictionary() {
    browser->addWindow({{"Alpha", "https://a.test/"}, {"beta", "https://b.test/"}, {"Gamma", "https://c.test/x"}});
    browser->addWindow({});
    browser->addWindow({{"Secret", "https://s.test/"}}, scripting::WindowMode::incognito);
  }
};

TEST_F(ChromiumDictionary, FindsElementsByEveryForm) {
  EXPECT_EQ(chromium("id of window 1"), R"("101")");
  EXPECT_EQ(chromium("id of last window"), R"("103")");
  EXPECT_EQ(chromium("title of tab -1 of window 1"), R"("Gamma")");
  EXPECT_EQ(chromium("title of middle tab of window 1"), R"("beta")");
  EXPECT_EQ(chromium("id of tab \"BETA\" of window 1"), R"("2")");
  EXPECT_EQ(chromium("URL of tab id \"4\" of window id \"103\""), R"("https://s.test/")");
  EXPECT_EQ(chromium("URL of tab id 4 of window id 103"), R"("https://s.test/")");
  EXPECT_EQ(chromium("id of tabs 2 thru 3 of window 1"), R"({"2", "3"})");
  EXPECT_EQ(chromium("id of tab after tab 1 of window 1"), R"("2")");
  EXPECT_EQ(chromium("id of tab before last tab of window 1"), R"("2")");
  EXPECT_EQ(chromium("id of some tab of window 3"), R"("4")");
  EXPECT_EQ(chromium("id of first item in tabs of window 1"), R"("1")");
}

TEST_F(ChromiumDictionary, MapsPropertiesOverLists) {
  EXPECT_EQ(chromium("id of windows"), R"({"101", "102", "103"})");
  EXPECT_EQ(chromium("id of every tab of window 1"), R"({"1", "2", "3"})");
  EXPECT_EQ(chromium("id of tabs of windows"), R"({{"1", "2", "3"}, {}, {"4"}})");
  EXPECT_EQ(chromium("mode of every window"), R"({"normal", "normal", "incognito"})");
  EXPECT_EQ(chromium("tabs of window 3"), R"({tab id "4" of window id "103"})");
}

TEST_F(ChromiumDictionary, TestsElementsInOneEvent) {
  EXPECT_EQ(chromium("id of first window whose active tab index > 0"), R"("101")");
  EXPECT_EQ(chromium("id of (windows whose active tab index > 0)"), R"({"101", "103"})");
  EXPECT_EQ(chromium("id of every tab of window 1 whose title is \"BETA\" or URL ends with \"/x\""), R"({"2", "3"})");
  EXPECT_EQ(chromium("id of (tabs of window 1 whose not (title contains \"a\" and id is \"1\"))"), R"({"2", "3"})");
  EXPECT_EQ(chromium("considering case\nid of (tabs of window 1 whose title is \"BETA\")\nend considering"), "{}");
  EXPECT_EQ(chromium("count (windows whose mode is \"incognito\")"), "1");
  // Ids are texts, and a text is no number.
  EXPECT_EQ(chromium("count (tabs of window 1 whose id is 2)"), "0");
  EXPECT_EQ(chromium("id of first tab of window 1 whose title is \"nothing\"").substr(0, 11), "error -1728");
}

TEST_F(ChromiumDictionary, AnswersForOneObjectWithItsID) {
  EXPECT_EQ(chromium("window 1"), R"(window id "101")");
  EXPECT_EQ(chromium("active tab of window 1"), R"(tab id "1" of window id "101")");
  EXPECT_EQ(chromium("class of tab 1 of window 1"), "tab");
  EXPECT_EQ(chromium("set t to tab 2 of window 1\nset index of window 3 to 1\nreturn title of t"), R"("beta")");
}

TEST_F(ChromiumDictionary, SaysWhatIsNotThere) {
  EXPECT_EQ(chromium("get window 7"), "error -1728: Chromium got an error: Can’t get window 7.");
  EXPECT_EQ(chromium("get tab id \"8\" of window 1"),
            "error -1728: Chromium got an error: Can’t get tab id \"8\" of window 1.");
  EXPECT_EQ(chromium("get tab id \"4\" of window 1").substr(0, 11), "error -1728"); // it is in another window
  EXPECT_EQ(chromium("get URL of active tab of window 2"),
            "error -1728: Chromium got an error: Can’t get active tab of window id \"102\".");
  EXPECT_EQ(chromium("get window 0"), "error -1719: Chromium got an error: Can’t get window 0. Invalid index.");
  EXPECT_EQ(chromium("get loading of window 1"), "error -1728: Chromium got an error: Can’t get loading of window 1.");
  EXPECT_EQ(chromium("set loading of tab 1 of window 1 to true"),
            "error -10006: Chromium got an error: Can’t set loading of tab 1 of window 1 to true.");
  EXPECT_EQ(chromium("set loading of every tab of window 1 to true"),
            "error -10006: Chromium got an error: Can’t set loading of every tab of window 1 to true.");
  EXPECT_EQ(chromium("reload window 1"),
            "error -1708: Chromium got an error: window 1 doesn’t understand the “reload” message.");
  EXPECT_EQ(chromium("set active tab index of window 1 to 4").substr(0, 11), "error -1719");
  EXPECT_EQ(chromium("set bounds of window 1 to {1, 2}").substr(0, 11), "error -1700");
}

TEST_F(ChromiumDictionary, CountsAndKnowsWhatExists) {
  EXPECT_EQ(chromium("(count of windows)"), "3");
  EXPECT_EQ(chromium("count windows"), "3");
  EXPECT_EQ(chromium("number of tabs of window 1"), "3");
  EXPECT_EQ(chromium("count every tab of every window"), "4");
  EXPECT_EQ(chromium("exists window id \"103\""), "true");
  EXPECT_EQ(chromium("exists window 9"), "false");
  EXPECT_EQ(chromium("exists active tab of window 2"), "false");
  EXPECT_EQ(chromium("exists (tabs of window 1 whose title is \"x\")"), "false");
}

TEST_F(ChromiumDictionary, ReadsAndSetsProperties) {
  EXPECT_EQ(chromium("active tab index of windows"), "{1, 0, 1}");
  EXPECT_EQ(chromium("set active tab index of window 1 to 3\ntell window 1 to return {active tab index, title}"),
            R"({3, "Gamma"})");
  EXPECT_EQ(chromium("set given name of window 1 to \"Work\"\ntell window 1 to return {name, title, given name}"),
            R"({"Work", "Work", "Work"})");
  EXPECT_EQ(chromium("set bounds of window 1 to {10, 20, 810, 620}\nreturn bounds of window 1"), "{10, 20, 810, 620}");
  EXPECT_EQ(chromium("set minimized of window 1 to true\nreturn visible of window 1"), "false");
  EXPECT_EQ(chromium("set visible of window 1 to true\nreturn minimized of window 1"), "false");
  EXPECT_EQ(chromium("set URL of tab 1 of window 1 to URL of tab 2 of window 1\nreturn loading of tab 1 of window 1"),
            "true");
  EXPECT_EQ(browser->commands().back(), "navigate 1 https://b.test/");
  EXPECT_EQ(chromium("set index of window id \"103\" to 1\nreturn index of windows"), "{1, 2, 3}");
  EXPECT_EQ(chromium("id of windows"), R"({"103", "101", "102"})");
  EXPECT_EQ(chromium("set index of window id \"103\" to 2\nreturn id of windows"), R"({"101", "103", "102"})");
  EXPECT_EQ(chromium("set minimized of every window to true\nreturn visible of windows"), "{false, false, false}");
  EXPECT_EQ(chromium("properties of tab 1 of window id \"103\""),
            R"({id:"4", name:"Secret", URL:"https://s.test/", loading:false})");
  EXPECT_EQ(chromium("version"), R"("156.0")");
}

TEST_F(ChromiumDictionary, MakesAndClosesTabsAndWindows) {
  EXPECT_EQ(chromium("set t to make tab in window 1\nset URL of t to \"https://n.test/\"\nreturn t"),
            R"(tab id "5" of window id "101")");
  EXPECT_EQ(chromium("make new tab at end of tabs of window 1 with properties {URL:\"https://e.test/\"}"),
            R"(tab id "6" of window id "101")");
  chromium("make new tab at beginning of tabs of window 1 with properties {URL:\"u\"}");
  chromium("make new tab at after tab 1 of window 1");
  EXPECT_EQ(chromium("id of tabs of window 1"), R"({"7", "8", "1", "2", "3", "5", "6"})");
  EXPECT_EQ(chromium("set w to make window with properties {   mode: \"incognito\",   given name: \"Mine\" }\n"
                     "return {id of w, mode of w, title of w, id of front window}"),
            R"({"104", "incognito", "Mine", "104"})");
  EXPECT_EQ(chromium("make document\nreturn id of front window"), R"("105")");
  EXPECT_EQ(chromium("make window with properties {mode:\"secret\"}").substr(0, 12), "error -10000");
  EXPECT_EQ(chromium("close (tabs 1 thru 2 of window id \"101\")\nreturn id of tabs of window id \"101\""),
            R"({"1", "2", "3", "5", "6"})");
  EXPECT_EQ(chromium("close window id \"101\"\nreturn id of windows"), R"({"105", "104", "102", "103"})");
  EXPECT_EQ(chromium("close windows\nreturn count windows"), "0");
}

TEST_F(ChromiumDictionary, RunsJavaScriptAndTakesWhatItGives) {
  browser->page = [](scripting::TabID id, const std::string& javascript) -> boost::json::value {
    if (javascript == "id")
      return id;
    return boost::json::parse(R"({"text":"a","n":[1,2.5,true,null],"inner":{"k":"v"}})");
  };
  EXPECT_EQ(chromium("execute tab 2 of window 1 javascript \"id\""), "2");
  EXPECT_EQ(chromium("tell active tab of window 1\nreturn execute javascript \"id\"\nend tell"), "1");
  EXPECT_EQ(chromium("execute every tab of window 1 javascript \"id\""), "{1, 2, 3}");
  EXPECT_EQ(chromium("n of (execute tab 1 of window 1 javascript \"x\")"), "{1, 2.5, true, missing value}");
  EXPECT_EQ(chromium("k of inner of (execute tab 1 of window 1 javascript \"x\")"), R"("v")");
  browser->page = nullptr;
  EXPECT_EQ(chromium("execute tab 1 of window 1 javascript \"undefined\""), "missing value");
}

TEST_F(ChromiumDictionary, PassesCommandsOn) {
  chromium("reload tab 2 of window 1\ntell tab 1 of window 1\nstop\ngo back\ngo forward\nend tell\nactivate");
  EXPECT_THAT(browser->commands(), ElementsAre("reload 2", "stop 1", "go back 1", "go forward 1", "activate"));
  chromium("open location \"https://o.test/\"\nquit");
  EXPECT_THAT(browser->commands().back(), "quit");
  EXPECT_EQ(run("return application \"Chromium\" is running"), "false");
  chromium("activate");
  EXPECT_THAT(launched, ElementsAre("chromium"));
}

TEST_F(ChromiumDictionary, TurnsFaultsOfTheBrowserIntoErrors) {
  using scripting::DriverFault;
  const auto errorFor = [&](DriverFault fault, const std::string& detail = {}) {
    browser->failure = platform::failure(fault, detail);
    return chromium("id of window 1");
  };
  EXPECT_THAT(errorFor(DriverFault::notRunning, "Chromium"), HasSubstr("error -600"));
  EXPECT_THAT(errorFor(DriverFault::notAccepting, "Chromium"),
              testing::AllOf(HasSubstr("error -1743"), HasSubstr("Apple Events"), HasSubstr("JavaScript")));
  EXPECT_THAT(errorFor(DriverFault::lost), HasSubstr("error -609"));
  EXPECT_EQ(errorFor(DriverFault::noSuchTab, "8"), "error -1728: Chromium got an error: Can’t get tab id \"8\".");
  EXPECT_EQ(errorFor(DriverFault::timedOut), "error -1712: Chromium got an error: AppleEvent timed out.");
  EXPECT_THAT(errorFor(DriverFault::stopped), HasSubstr("error -128"));
  // A page's own words must not look like an error that the engine knows.
  EXPECT_THAT(errorFor(DriverFault::dialogOpen, "code -1728 (-2741)"),
              testing::AllOf(HasSubstr("error -10000"), Not(HasSubstr("-1728")), Not(HasSubstr("(-27"))));
  EXPECT_THAT(errorFor(DriverFault::tabCrashed), HasSubstr("error -10000"));
}

TEST_F(ChromiumDictionary, AnswersThousandsOfEventsFromOneSnapshot) {
  std::vector<ModelBrowser::Page> pages(1000, {"T", "https://t.test/"});
  browser->addWindow(pages);
  EXPECT_EQ(chromium("set n to 0\nrepeat with w in windows\nrepeat with t in every tab of w\n"
                     "if id of t is \"1004\" then set n to n + 1\ntell t to set x to {title, URL, loading}\n"
                     "end repeat\nend repeat\nreturn n"),
            "1");
  EXPECT_EQ(browser->snapshotsTaken, 1);
  EXPECT_GT(browser->snapshotsAsked, 1000);
}

TEST_F(ChromiumDictionary, AnswersToTheNameThatAScriptUsesForIt) {
  EXPECT_EQ(run("use Br : application \"Chromium\"\ntell Br to get title of tab 1 of window 1"), "\"Alpha\"");
  EXPECT_EQ(run("use scripting additions\nuse Br : application id \"org.chromium.chromium\"\n"
                "on firstTitle()\nreturn title of tab 1 of window 1 of Br\nend\nfirstTitle()"),
            "\"Alpha\"");
}

TEST_F(ChromiumDictionary, ReferencesOfAnyLengthEndInAnError) {
  EXPECT_THAT(chromium("set r to a reference to window 1\nrepeat 100000 times\nset r to a reference to (name of r)\n"
                       "end repeat\nexists r"),
              StartsWith("error -2706"));
  EXPECT_EQ(chromium("set r to windows\nrepeat 100000 times\nset r to a reference to (windows where it is r)\n"
                     "end repeat\nset r to 1\nreturn r"),
            "1");
}

TEST(ScriptingDirectory, FindsApplicationsInAnyCase) {
  testsupport::ScriptBench bench;
  EXPECT_NE(bench.directory.findByID("ORG.chromium.Chromium"), nullptr);
  EXPECT_NE(bench.directory.findByName("system events"), nullptr);
  EXPECT_EQ(bench.directory.findByID("org.chromium.chromium"), bench.directory.findByName("Chromium"));
  EXPECT_EQ(bench.directory.findByID("com.google.chrome"), nullptr); // not installed, but known
  EXPECT_NE(bench.directory.terminologyByID("com.google.chrome"), nullptr);
  EXPECT_EQ(bench.directory.terminologyByName("Finder"), nullptr);
  EXPECT_THAT(bench.run("tell application \"Vivaldi\" to get id of window 1"), HasSubstr("error -1728"));
  bench.run("tell application \"Tabwright\" to activate");
  EXPECT_EQ(bench.ownActivations, 1);
}

} // namespace
