// Bounds of a run: whatever a script does, it ends, and it ends in an error.
#include "EmptyDirectory.h"
#include "applescript/Interpreter.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace tabwright::applescript {
namespace {

class LimitTests : public testing::Test {
protected:
  LimitTests() { surroundings.directory = &directory; }

  int errorOf(const std::string& source, std::stop_token stop = {}) {
    Interpreter interpreter(surroundings, limits);
    const auto script = interpreter.compile(source);
    try {
      interpreter.run(*script, {}, stop);
    } catch (const ScriptError& error) {
      return error.number();
    }
    return 0;
  }
  /// Runs the script on a thread and requests its stop once it has written to the log.
  int errorWhenStopped(const std::string& source) {
    std::stop_source stop;
    surroundings.log = [&](std::string_view) { stop.request_stop(); };
    return errorOf(source, stop.get_token());
  }

  EmptyDirectory directory;
  Surroundings surroundings;
  RunLimits limits;
};

TEST_F(LimitTests, AStopEndsLoopsCallsAndDelays) {
  for (const char* source : {
           "log 1\nrepeat\nend repeat",
           "log 1\nrepeat while true\nend repeat",
           "log 1\nrepeat with i from 1 to 9000000000\nend repeat",
           "log 1\ndelay 1.0E+8",
           "on f(n)\nif n > 500 then return 0\nf(n + 1)\nreturn f(n + 1)\nend f\nlog 1\nf(0)",
           "log 1\nrepeat\ntry\ndelay 1\non error\n-- goes on\nend try\nend repeat",
           "log 1\ntry\nrepeat\nend repeat\non error number n\nrepeat\nend repeat\nend try",
       })
    EXPECT_EQ(errorWhenStopped(source), errorNumber::userCancelled) << source;
}

TEST_F(LimitTests, AnErrorOutlivesTheScriptThatItTellsOf) {
  std::optional<ScriptError> kept;
  {
    Interpreter interpreter(surroundings, limits);
    const auto script = interpreter.compile("+it");
    try {
      interpreter.run(*script, {});
    } catch (const ScriptError& error) {
      kept = error;
    }
  }
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->sentence(), "Can’t make «script» into type number.");
}

TEST_F(LimitTests, AStopReachesADelayThatHasBegun) {
  std::stop_source stop;
  std::jthread stopper;
  surroundings.log = [&](std::string_view) { stopper = std::jthread([&] { stop.request_stop(); }); };
  EXPECT_EQ(errorOf("log 1\ndelay 1.0E+8", stop.get_token()), errorNumber::userCancelled);
}

TEST_F(LimitTests, StepsAreBoundedAndNoTryOutlivesThat) {
  limits.steps = 10000;
  EXPECT_EQ(errorOf("repeat\ntry\nrepeat\nend repeat\nend try\nend repeat"), errorNumber::userCancelled);
  EXPECT_EQ(errorOf("repeat 1000 times\nend repeat"), 0);
  limits.steps = 100; // fewer than are counted at a time
  EXPECT_EQ(errorOf("try\nerror \"x\"\nend try"), 0);
}

TEST_F(LimitTests, DepthIsBoundedAlsoOnASmallStack) {
  EXPECT_EQ(errorOf("on f(n)\nreturn f(n + 1)\nend f\nf(0)"), errorNumber::stackOverflow);
  std::string sum = "1";
  for (int level = 0; level < 60; ++level)
    sum = "(1 + f(n + " + sum + "))";
  const std::string wide = "on f(n)\nreturn " + sum + "\nend f\nf(0)";
  limits.handlerDepth = 1'000'000;
  EXPECT_EQ(errorOf(wide), errorNumber::stackOverflow);
  int number = 0;
  std::thread([&] { number = errorOf(wide); }).join();
  EXPECT_EQ(number, errorNumber::stackOverflow);
}

TEST_F(LimitTests, ValuesAreBounded) {
  limits.valueBytes = 1 << 20;
  EXPECT_EQ(errorOf("set t to \"xxxxxxxx\"\nrepeat\nset t to t & t\nend repeat"), errorNumber::outOfMemory);
  EXPECT_EQ(errorOf("set t to \"x\"\nrepeat\nset t to t & \"yyyyyyyyyyyyyyyy\"\nend repeat"), errorNumber::outOfMemory);
  EXPECT_EQ(errorOf("set xs to {1}\nrepeat\nset xs to xs & xs\nend repeat"), errorNumber::outOfMemory);
  EXPECT_EQ(errorOf("set xs to {}\nrepeat\nset end of xs to 1\nend repeat"), errorNumber::outOfMemory);
}

TEST_F(LimitTests, PropertiesOutliveRunsAndFailedLoadsAreTriedAgain) {
  Interpreter interpreter(surroundings);
  const auto script = interpreter.compile("property n : 0\non next()\nset n to n + 1\nreturn n\nend next");
  EXPECT_EQ(sourceForm(interpreter.call(*script, "NEXT")), "1");
  EXPECT_EQ(sourceForm(interpreter.call(*script, "next")), "2");
  EXPECT_THROW(interpreter.call(*script, "previous"), ScriptError);
  const auto broken = interpreter.compile("property n : 1 / 0\nreturn n");
  EXPECT_THROW(interpreter.run(*broken), ScriptError);
  EXPECT_THROW(interpreter.run(*broken), ScriptError);
}

} // namespace
} // namespace tabwright::applescript
