// The events that a script sends to applications, their specifiers, and how many there are.
#include "RecordingApplication.h"
#include "applescript/Interpreter.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ObjectSpecifier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::applescript {
namespace {

using test::RecordingDirectory;
using testing::ElementsAre;
using testing::IsEmpty;

class EventTests : public testing::Test {
protected:
  EventTests() {
    surroundings.directory = &directory;
    surroundings.sleep = [](std::chrono::nanoseconds, std::stop_token) {};
  }

  Value run(const std::string& source, std::stop_token stop = {}) {
    Interpreter interpreter(surroundings, limits);
    script = interpreter.compile(source);
    return interpreter.run(*script, {}, stop);
  }
  /// Runs the lines inside `tell application "Google Chrome"`, with handlers given behind.
  std::string inChrome(const std::string& lines, const std::string& handlers = "") {
    try {
      const Value value = run("tell application id \"com.google.Chrome\"\n" + lines + "\nend tell\n" + handlers);
      return value.isNothing() ? "nothing" : sourceForm(value);
    } catch (const ScriptError& error) {
      return "error " + std::to_string(error.number()) + " " + error.message();
    }
  }
  Value window(int id) { return elementByID(applicationRoot(directory.chrome), fourCharCode("cwin"), id); }
  Value tab(int id) { return elementByID(*window(1).get<Value::SpecifierPointer>(), fourCharCode("CrTb"), id); }
  std::vector<std::string>& events() { return directory.chrome->events; }
  std::map<std::string, Value>& answers() { return directory.chrome->answers; }

  RecordingDirectory directory;
  Surroundings surroundings;
  RunLimits limits;
  CompiledScript script;
};

TEST_F(EventTests, AccessIsOneGetHoweverLongTheChain) {
  answers()["get name of every window"] = Value::list({"a", "b"});
  answers()["get URL of every tab of window 2"] = Value::list({"u"});
  EXPECT_EQ(inChrome("set x to name of windows\nset y to URL of tabs of window 2\n{x, y}"), R"({{"a", "b"}, {"u"}})");
  EXPECT_THAT(events(), ElementsAre("get name of every window", "get URL of every tab of window 2"));
}

TEST_F(EventTests, AssignmentFetchesAndAStoredObjectIsNotFetchedAgain) {
  answers()["get window 1"] = window(7);
  answers()["get id of window id 7"] = 7;
  EXPECT_EQ(inChrome("set w to front window\nset v to w\nset ok to v is missing value or v is null or v is \"x\"\n"
                     "{ok, w is v, id of v, class of {w}}"),
            "{false, true, 7, list}");
  EXPECT_THAT(events(), ElementsAre("get window 1", "get id of window id 7"));
}

TEST_F(EventTests, PropertiesInComparisonsAndArgumentsAreFetched) {
  answers()["get mode of window 1"] = "incognito";
  answers()["get URL of active tab of window 1"] = Value::missing();
  answers()["get index of window 1"] = 3;
  EXPECT_EQ(inChrome("tell window 1\nset a to mode is \"incognito\"\nset b to URL of active tab is missing value\n"
                     "set c to index + 1\nset d to my twice(index)\nend tell\n{a, b, c, d}",
                     "on twice(n)\nreturn n * 2\nend twice"),
            "{true, true, 4, 6}");
  EXPECT_THAT(events(), ElementsAre("get mode of window 1", "get URL of active tab of window 1",
                                    "get index of window 1", "get index of window 1"));
}

TEST_F(EventTests, WhoseTravelsInOneEventWithItsOperandsEvaluated) {
  answers()["get every window whose active tab index > 0"] = Value::list({window(1)});
  EXPECT_EQ(inChrome("set ws to windows whose active tab index > 0\ncount ws"), "1");
  inChrome("repeat with t in {\"News\"}\nset w to first window whose name is t and (not visible or id is in {1, my "
           "two()})\nend repeat",
           "on two()\nreturn 2\nend two");
  inChrome("count (every tab of window 1 whose title does not contain \"x\")");
  EXPECT_THAT(events(), ElementsAre("get every window whose active tab index > 0",
                                    "get window 1 whose name = \"News\" and not (visible = true) or id is in {1, 2}",
                                    "count every tab of window 1 whose not (title contains \"x\")"));
}

TEST_F(EventTests, WhoseThatComputesIsEvaluatedHere) {
  answers()["get every window"] = Value::list({window(1), window(2)});
  answers()["get name of window id 1"] = "a";
  answers()["get name of window id 2"] = "b";
  EXPECT_EQ(inChrome("first window whose name & \"!\" is \"b!\""), "window id 2 of application \"Google Chrome\"");
  EXPECT_EQ(inChrome("last window whose my f(it)", "on f(w)\nreturn name of w is \"a\"\nend f"),
            "window id 1 of application \"Google Chrome\"");
  EXPECT_EQ(inChrome("first window whose (id as text) is \"7\"").substr(0, 11), "error -1728");
}

TEST_F(EventTests, CountExistsAndNumberOfAskTheApplication) {
  answers()["count every window"] = 0;
  answers()["exists window id 9"] = true;
  EXPECT_EQ(
      inChrome("{(count of windows) is 0, number of windows, count windows, exists window id 9, window id 9 exists, "
               "(count windows) > 0}"),
      "{true, 0, 0, true, true, false}");
  EXPECT_EQ(events().size(), 6U);
}

TEST_F(EventTests, LoopsGetTheirListOnce) {
  answers()["get every tab of window 1"] = Value::list({tab(4), tab(5)});
  answers()["get id of tab id 4 of window id 1"] = 4;
  answers()["get id of tab id 5 of window id 1"] = 5;
  EXPECT_EQ(inChrome("set found to {}\nrepeat with t in tabs of window 1\nif id of t is 5 then set end of found to t\n"
                     "end repeat\nset {x} to found\nreturn {x, found}"),
            "{tab id 5 of window id 1 of application \"Google Chrome\", {tab id 5 of window id 1 of application "
            "\"Google Chrome\"}}");
  EXPECT_THAT(events(), ElementsAre("get every tab of window 1", "get id of tab id 4 of window id 1",
                                    "get id of tab id 5 of window id 1"));
}

TEST_F(EventTests, ItemsOfAllElementsAreElements) {
  answers()["get tab 1 of window 3"] = tab(4);
  answers()["get name of every tab of window 3"] = Value::list({"one", "two"});
  answers()["get title of tab id 4 of window id 1"] = "long title";
  EXPECT_EQ(inChrome("set w to a reference to window 3\nset t to first item in tabs of w\n"
                     "{item 2 of name of tabs of w, length of title of t, word 2 of title of t}"),
            "{\"two\", 10, \"title\"}");
  EXPECT_EQ(events().front(), "get tab 1 of window 3");
  EXPECT_EQ(events().size(), 4U);
}

TEST_F(EventTests, IndexNameAndIDAreToldApart) {
  for (const char* reference :
       {"tab 3 of window \"main\"", "tab index \"3\" of window id \"8\"", "last tab of window 1",
        "tabs 2 thru -1 of window 1", "some tab of middle window", "tab index (1 + 1) of window 1"})
    inChrome(std::string("get ") + reference);
  EXPECT_THAT(events(),
              ElementsAre("get tab 3 of window \"main\"", "get tab 3 of window id \"8\"", "get last tab of window 1",
                          "get tabs 2 thru -1 of window 1", "get some tab of middle window", "get tab 2 of window 1"));
}

TEST_F(EventTests, SettingSendsValuesToUnresolvedPlaces) {
  answers()["get title of window 2"] = "T";
  inChrome("repeat with u in {\"https://x\"}\nset URL of tab 1 of window 1 to u\nend repeat\n"
           "set index of window 1 to 1 + 1\nset title of window 1 to title of window 2\n"
           "tell window 1 to set active tab index to 3");
  EXPECT_THAT(events(), ElementsAre("set URL of tab 1 of window 1 data:\"https://x\"", "set index of window 1 data:2",
                                    "get title of window 2", "set title of window 1 data:\"T\"",
                                    "set active tab index of window 1 data:3"));
}

TEST_F(EventTests, CommandsKeepPlacesAndSubjects) {
  answers()["execute JvSc:\"1\" to active tab of window 1"] = "one";
  EXPECT_EQ(inChrome("activate\nclose tab 1 of window 1\nset w to a reference to window 1\n"
                     "make new tab at end of tabs of w with properties {URL:\"u\"}\nmake new window\n"
                     "tell active tab of window 1 to return execute javascript \"1\""),
            "\"one\"");
  EXPECT_THAT(events(), ElementsAre("activate", "close tab 1 of window 1",
                                    "make kocl:tab insh:end of every tab of window 1 prdt:{URL:\"u\"}",
                                    "make kocl:window", "execute JvSc:\"1\" to active tab of window 1"));
}

TEST_F(EventTests, DirectObjectChoosesTheApplication) {
  answers()["get window 1"] = window(7);
  run("tell application \"Google Chrome\" to set w to window 1\n"
      "tell application \"System Events\"\nactivate w\ntell process \"X\" to click menu item 2 of menu 1\nend tell\n"
      "tell application \"Google Chrome\" to activate");
  EXPECT_THAT(events(), ElementsAre("get window 1", "activate window id 7", "activate"));
  EXPECT_THAT(directory.systemEvents->events, ElementsAre("click menu item 2 of menu 1 of process \"X\""));
}

TEST_F(EventTests, WhatIsKnownOfAnApplicationNeedsNoEvent) {
  EXPECT_EQ(sourceForm(run(
                "set a to application id \"com.google.CHROME\"\n"
                "{name of a, id of a, running of a, a is running, class of a, a is application \"Google Chrome\"}")),
            "{\"Google Chrome\", \"com.google.Chrome\", true, true, application, true}");
  EXPECT_THAT(events(), IsEmpty());
}

TEST_F(EventTests, ErrorsCarryTheApplicationAndThePlace) {
  const std::string source = "set x to 1\ntell application \"Google Chrome\"\n\tset y to name of window 9\nend tell";
  try {
    run(source);
    FAIL();
  } catch (const ScriptError& error) {
    EXPECT_EQ(error.errorDescription(),
              "execution error: Google Chrome got an error: Can’t get name of window 9. (-1728)");
    ASSERT_TRUE(error.range());
    EXPECT_EQ(source.substr(error.range()->offset, error.range()->length), "name of window 9");
  }
}

TEST_F(EventTests, UnqualifiedCallsInsideATellFindTheScriptsHandler) {
  EXPECT_EQ(inChrome("helper(2)", "on helper(x)\nreturn x + 1\nend helper"), "3");
  EXPECT_EQ(inChrome("nowhere(2)"), "error -1708 Google Chrome got an error: Can’t continue nowhere.");
}

TEST_F(EventTests, ATellEndsWithItsBlockHoweverThatEnds) {
  answers()["get name of window 1"] = "n";
  EXPECT_EQ(inChrome("try\ntell window 1\nerror \"x\"\nend tell\non error\nset n to name of it\nend try\nn"),
            "\"Google Chrome\"");
  EXPECT_EQ(inChrome("tell window 1 to set n to my ask()\nn", "on ask()\nreturn class of it\nend ask"), "script");
}

TEST_F(EventTests, DeadlinesComeFromTimeoutsAndLimits) {
  std::vector<std::chrono::seconds> left;
  directory.chrome->onEvent = [&](const AppleEventMessage& message) {
    left.push_back(std::chrono::round<std::chrono::seconds>(message.deadline - std::chrono::steady_clock::now()));
  };
  limits.eventTimeout = std::chrono::seconds(5000);
  inChrome("activate\nwith timeout of 90000 seconds\nactivate\nend timeout\nactivate");
  ASSERT_EQ(left.size(), 3U);
  EXPECT_GT(left[1], left[0] + std::chrono::seconds(50000));
  EXPECT_GT(left[1], left[2] + std::chrono::seconds(50000));
}

TEST_F(EventTests, ForeignFailuresAreTranslated) {
  struct Broken final : platform::Failure {
    [[nodiscard]] std::string errorDescription() const override { return "The wire is cut."; }
    [[nodiscard]] platform::FailureIdentity identity() const override { return {"Test", "broken", {}}; }
  };
  directory.chrome->onEvent = [](const AppleEventMessage&) { throw Broken(); };
  EXPECT_EQ(inChrome("try\nactivate\non error m number n\nreturn {m, n}\nend try"),
            "{\"Google Chrome got an error: The wire is cut.\", -10000}");
}

} // namespace
} // namespace tabwright::applescript
