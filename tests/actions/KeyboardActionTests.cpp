// The keyboard actions: the program that types, and the key that is pressed.
#include "support/ActionBench.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::actions {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Keyboard : public testing::Test {
protected:
  Keyboard() {
    bench.failureNumber = 0; // its program comes to its end without a return
    bench.workspace.run(7, "org.example.editor", "Editor");
    bench.workspace.run(8, "org.chromium.chromium", "Chromium");
  }

  /// The lines of the program that types, without the library.
  std::string typed(host::ParameterTexts parameters) {
    parameters.emplace_back("targetContext", "chromium");
    bench.perform("SimulateTyping", std::move(parameters));
    const std::string& program = bench.scripts.back();
    const std::size_t begin = program.find("set inputText");
    return program.substr(begin, program.find("return my failure(0)") - begin);
  }
  std::string failure(const std::string& name, host::ParameterTexts parameters) {
    try {
      bench.perform(name, std::move(parameters));
    } catch (const platform::Failure& failure) {
      return failure.identity().caseName + (failure.cause() ? ": " + failure.cause()->sentence : "");
    }
    return "none";
  }

  testsupport::ActionBench bench;
};

TEST_F(Keyboard, TypesByAProgramForSystemEvents) {
  EXPECT_EQ(typed({{"characters", R"(say "a\b")"}, {"keystrokeDelay", "s0_01"}}),
            "set inputText to \"say \\\"a\\\\b\\\"\"\n"
            "tell process \"org.chromium.chromium\"\n"
            "repeat with i from 1 to count of characters in inputText\n"
            "set currentChar to character i of inputText\n"
            "tell application id \"org.chromium.chromium\" to activate\n"
            "keystroke currentChar using {}\n"
            "key up {}\n"
            "delay 0.01\n"
            "end repeat\n"
            "end tell\n"
            "end tell\n");
  EXPECT_THAT(bench.scripts.back(), HasSubstr("tell application id \"com.apple.systemevents\"\n"));
  EXPECT_THAT(bench.steps, ElementsAre("schedule", "count", "run"));
}

TEST_F(Keyboard, HoldsModifiersInOneOrderWhateverTheirStatus) {
  const std::string held = typed({{"characters", "ÄB"}, {"modShift", "true"}, {"modCmd", "yes"}, {"modOpt", "1"}});
  EXPECT_THAT(held, HasSubstr("keystroke currentChar using {command down, option down, shift down}\n"
                              "key up {command, option, shift}\ndelay 0.0\n"));
  EXPECT_THAT(held, HasSubstr("\"ÄB\""));
  EXPECT_THAT(typed({{"characters", "ÄB"}, {"modCtrl", "true"}, {"modifiersStatus", "enabled"}}), HasSubstr("\"äb\""));
}

TEST_F(Keyboard, AsksBeforeManyShortcuts) {
  const auto type = [&](const char* text, const char* footGun = "false") {
    bench.steps.clear();
    return failure(
        "SimulateTyping",
        {{"characters", text}, {"modCtrl", "true"}, {"targetContext", "chromium"}, {"isFootGunModeEnabled", footGun}});
  };
  EXPECT_EQ(type("abcde"), "none");
  EXPECT_EQ(type("e\u0301e\u0301e\u0301e\u0301e\u0301"), "none") << "5 as a reader counts";
  EXPECT_THAT(type("abcdef"), HasSubstr("refused: Nothing was typed."));
  EXPECT_THAT(bench.steps, ElementsAre("confirmation")) << "not counted";
  EXPECT_EQ(type("abcdef", "true"), "none");
  bench.isConfirmed = true;
  EXPECT_EQ(type("abcdef"), "none");
  EXPECT_THAT(bench.steps, ElementsAre("confirmation", "schedule", "count", "run"));
}

TEST_F(Keyboard, TypesIntoWhicheverApplicationIsNamed) {
  bench.perform("SimulateTyping", {{"characters", "x"}, {"targetContext", "org.example.editor"}});
  EXPECT_THAT(bench.scripts.back(), HasSubstr("tell process \"org.example.editor\""));
  bench.perform("SimulateTyping", {{"characters", ""}});
  EXPECT_THAT(bench.scripts.back(), HasSubstr("tell process \"org.chromium.chromium\""));
  EXPECT_EQ(failure("SimulateTyping", {{"characters", "x"}, {"targetContext", "org.example.nowhere"}}),
            "appCouldNotBeActivated: “org.example.nowhere” neither runs nor could be started. These run: "
            "org.chromium.chromium, org.example.editor.");
  bench.failureNumber = 5;
  EXPECT_EQ(failure("SimulateTyping", {{"characters", "x"}, {"targetContext", "chromium"}}), "tabNotFound");
}

TEST_F(Keyboard, PressesANamedKey) {
  bench.perform("SimulateNamedKeyPress", {{"namedKey", "page down"},
                                          {"targetContext", "org.example.editor"},
                                          {"modCmd", "true"},
                                          {"modOpt", "true"},
                                          {"delayAfterKeystroke", "s0_2"}});
  EXPECT_THAT(bench.workspace.deeds, ElementsAre("activate 7", "key ff56 control alt"));
  EXPECT_THAT(bench.steps, ElementsAre("schedule", "count", "sleep 0.2"));
  bench.workspace.deeds.clear();
  bench.perform("SimulateNamedKeyPress", {{"namedKey", "53"}, {"targetContext", ".systemwide"}});
  EXPECT_THAT(bench.workspace.deeds, ElementsAre("key ff1b"));
  bench.perform("SimulateNamedKeyPress", {{"namedKey", "Tab"}, {"targetContext", "org.example.nowhere"}});
  EXPECT_EQ(bench.workspace.deeds.back(), "key ff09") << "a target that can't be launched is no failure …";
  EXPECT_THAT(bench.steps, Contains(HasSubstr("The key went to what is in front."))) << "… but is told of";
  bench.perform("SimulateNamedKeyPress", {{"namedKey", "Cursor Up"}, {"targetContext", ".systemwide"}});
  EXPECT_EQ(bench.workspace.deeds.back(), "key ff52");
  bench.workspace.deeds.clear();
  bench.perform("SimulateNamedKeyPress", {{"namedKey", "Tab"}});
  EXPECT_THAT(bench.steps, Contains("frontmost lookup"));
  EXPECT_THAT(bench.workspace.deeds, ElementsAre("activate 7", "key ff09"));
}

TEST_F(Keyboard, ToleratesAKeyThatIsNotThereAndNothingElse) {
  const auto press = [&](platform::DesktopFault fault) {
    bench.workspace.onKey = [fault] { throw platform::failure(fault, "F20"); };
    bench.steps.clear();
    return failure("SimulateNamedKeyPress", {{"namedKey", "F20"}, {"targetContext", ".systemwide"}});
  };
  EXPECT_EQ(press(platform::DesktopFault::noSuchKey), "none");
  EXPECT_THAT(bench.steps, Contains(HasSubstr("notice: ")));
  EXPECT_EQ(press(platform::DesktopFault::noWindowSystem), "noWindowSystem");
}

} // namespace
} // namespace tabwright::actions
