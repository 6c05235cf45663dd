// Two roads to the finished program: its own part written by hand in golden files, and a plain step-by-step assembly
// over the whole text that is compared on many random actions.
#include "EngineWorld.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"
#include "support/LogCapture.h"
#include "support/SourceFolder.h"
#include "support/Texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace tabwright::engine {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testsupport::EngineWorld;
using testsupport::replacingAll;
using testsupport::sourceText;

struct Program {
  std::string appleScript;
  Scriptacular::Arguments args;
  TargetContext target = EngineWorld::chrome();
  TellSystemEvents tellSystemEvents = TellSystemEvents::no;
};

std::string built(const Program& program) {
  EngineWorld world;
  return Scriptacular(world.services(), program.appleScript, program.args, program.target, program.tellSystemEvents)
      .buildScriptText();
}

std::string assembledStepByStep(const Program& program) {
  std::string keys;
  for (const auto& [key, value] : program.args)
    keys += (keys.empty() ? "" : ", ") + key;
  const bool isSafari = program.target.id == "com.apple.safari";
  const bool toSystemEvents = program.tellSystemEvents == TellSystemEvents::yes;
  std::string text = sourceText("resources/engine/scriptPreludeBase.applescript") +
                     sourceText(isSafari ? "resources/engine/safariLibrary.applescript"
                                         : "resources/engine/chromiumLibrary.applescript");
  std::string question = sourceText("resources/job/versionQuestion.js");
  question.pop_back();
  text = replacingAll(text, "__VERSION_QUESTION__", escapeForLiteral(question));
  text = replacingAll(text, "__ARGKEYS__", keys);
  text = replacingAll(text, "__MAIN_RECEIVER_ID__", toSystemEvents ? "com.apple.systemevents" : program.target.id);
  text = replacingAll(text, "__BROWSER_BUNDLE_ID__", program.target.id);
  text = replacingAll(text, "__APPLESCRIPT__", program.appleScript);
  text = replacingAll(text, "return success()", "return my success({})");
  text = replacingAll(text, "return success(", "return my success(");
  text = replacingAll(text, "return failure(", "return my failure(");
  std::string finished;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos)
      continue;
    line = line.substr(first, line.find_last_not_of(" \t") - first + 1);
    if (line.starts_with("--") || replacingAll(line, "\u00a0", "").find_first_not_of(" \t\r\v\f") == std::string::npos)
      continue;
    finished += (finished.empty() ? "" : "\n") + line;
  }
  return finished;
}

TEST(ScriptAssembly, BeginsWithTheLinesWrittenByHand) {
  EXPECT_THAT(
      built({.appleScript = sourceText("tests/engine/golden/action.applescript"), .args = {{"b", "2"}, {"a", "1"}}}),
      StartsWith(sourceText("tests/engine/golden/chromium.applescript") + "on success("));
  EXPECT_THAT(built({.appleScript = "set inputText to \"x\"\n  keystroke inputText",
                     .args = {},
                     .target = EngineWorld::safari(),
                     .tellSystemEvents = TellSystemEvents::yes}),
              StartsWith(sourceText("tests/engine/golden/safariToSystemEvents.applescript") + "on success("));
}

TEST(ScriptAssembly, EqualsThePlainAlgorithmOnRandomActions) {
  static const std::vector<std::string> fragments{"return success()",
                                                  "return success(",
                                                  "return failure(",
                                                  "return my success(",
                                                  "return ",
                                                  "success(",
                                                  ")",
                                                  "\n",
                                                  "\n\n",
                                                  "\n  ",
                                                  "\t",
                                                  " ",
                                                  "--",
                                                  "-- note",
                                                  "\n--",
                                                  "\r",
                                                  "\r\n",
                                                  "\u00a0",
                                                  "\n\u00a0\n",
                                                  "\n\v\n",
                                                  "\"",
                                                  "\\",
                                                  "__APPLESCRIPT__",
                                                  "__ARGKEYS__",
                                                  "__BROWSER_BUNDLE_ID__",
                                                  "__MAIN_RECEIVER_ID__",
                                                  "__isPrivateWindow",
                                                  "__",
                                                  "_",
                                                  "set x to 1",
                                                  "“ü”",
                                                  "rreturn success()",
                                                  "\nend tell\n",
                                                  "return\nsuccess("};
  std::mt19937 random(20010101);
  for (int round = 0; round < 600; ++round) {
    Program program;
    for (std::size_t count = random() % 24; count > 0; --count)
      program.appleScript += fragments[random() % fragments.size()];
    for (std::size_t count = random() % 4; count > 0; --count)
      program.args.emplace("key" + std::to_string(random() % 100), "__ARGKEYS__");
    if (random() % 2 == 0)
      program.target = EngineWorld::safari();
    if (random() % 4 == 0)
      program.tellSystemEvents = TellSystemEvents::yes;
    ASSERT_EQ(built(program), assembledStepByStep(program)) << program.appleScript;
  }
}

TEST(ScriptAssembly, OnlySafarisOwnIdentifierHasTheSafariLibrary) {
  EXPECT_THAT(built({.appleScript = "", .args = {}, .target = EngineWorld::safari()}), HasSubstr("__isPrivateWindow"));
  const std::string other = built({.appleScript = "", .args = {}, .target = {"com.apple.Safari", "Safari"}});
  EXPECT_THAT(other, Not(HasSubstr("__isPrivateWindow")));
  EXPECT_THAT(other, HasSubstr("execute javascript js"));
}

TEST(ScriptAssembly, ArgumentsAreLoggedAndNotWrittenIntoTheText) {
  const testsupport::LogCapture log;
  const std::string text = built({.appleScript = "return success(url)", .args = {{"url", "https://a/?x=\"1\""}}});
  EXPECT_THAT(text, HasSubstr("on runWithVariables(url)"));
  EXPECT_THAT(text, Not(HasSubstr("https://a/")));
  built({.appleScript = "", .args = {}});
  EXPECT_THAT(log.lines(), testing::ElementsAre("debug Scriptacular: Arguments: [\"url\": \"https://a/?x=\"1\"\"]",
                                                "debug Scriptacular: Arguments: [:]"));
}

} // namespace
} // namespace tabwright::engine
