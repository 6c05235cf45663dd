// Runs over models of the tasks and files: every way a run can end, and what it leaves behind.
#include "EngineWorld.h"
#include "engine/errors/AppleScriptRuntimeError.h"
#include "engine/errors/ScriptacularError.h"
#include "engine/errors/StringError.h"
#include "support/FailureText.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/system/system_error.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::engine {
namespace {

using platform::AppleEventDescriptor;
using platform::fourCharCode;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testsupport::EngineWorld;
using testsupport::MemoryFileManager;
using testsupport::ModelScriptTasks;
using testsupport::runTask;
using Operation = MemoryFileManager::Operation;

class ScriptError final : public platform::Failure {
public:
  explicit ScriptError(std::string text) : text_(std::move(text)) {}
  std::string errorDescription() const override { return text_; }
  platform::FailureIdentity identity() const override { return {"ScriptError", "model", std::nullopt}; }

private:
  std::string text_;
};

class ScriptacularRun : public testing::Test {
protected:
  std::string failureOfRun(const std::string& text = "return 1") {
    return testsupport::failureName([&] { runTask(world.scriptacular().runScriptText<std::string>(text)); });
  }
  AppleEventDescriptor triple(bool flag, AppleEventDescriptor second, AppleEventDescriptor third) {
    return AppleEventDescriptor::list({AppleEventDescriptor::boolean(flag), std::move(second), std::move(third)});
  }

  EngineWorld world;
  testsupport::LogCapture log;
  const std::string errorLine = "error Scriptacular: ";
};

TEST_F(ScriptacularRun, SendsTheValuesInTheOrderOfTheKeysAndDecodesThePayload) {
  std::string fileText;
  world.tasks.answerSuccess("[\"x\", \"y\"]", "120");
  world.tasks.onInit = [&](const std::filesystem::path& script) { fileText = world.files.files.at(script); };
  Scriptacular scriptacular = world.scriptacular("return success(a)", {{"b", "2"}, {"a", "\"1\""}});
  const std::string expectedText = scriptacular.buildScriptText();
  EXPECT_THAT(runTask(scriptacular.run<std::vector<std::string>>()), ElementsAre("x", "y"));

  EXPECT_EQ(fileText, expectedText);
  ASSERT_THAT(world.tasks.events, SizeIs(1));
  const platform::AppleEvent& event = world.tasks.events.front();
  EXPECT_EQ(event.eventClass, 1634952050u);
  EXPECT_EQ(event.eventID, 1886610034u);
  EXPECT_EQ(event.parameters.at(1936613741u).stringValue(), "runWithVariables");
  EXPECT_EQ(event.parameters.at(757935405u).description(), "{\"\\\"1\\\"\", \"2\"}");
  EXPECT_THAT(world.files.written, ElementsAre("/scripts/Temp/788918400.25.applescript"));
  EXPECT_THAT(world.files.files, IsEmpty());
  EXPECT_THAT(world.versions.recorded, ElementsAre(Pair("com.google.chrome", "120")));
  EXPECT_THAT(log.linesOf("debug"),
              ElementsAre("debug Scriptacular: Arguments: [\"a\": \"\"1\"\", \"b\": \"2\"]",
                          "debug Scriptacular: Arguments: [\"a\": \"\"1\"\", \"b\": \"2\"]",
                          "debug Scriptacular: File: /scripts/Temp/788918400.25.applescript",
                          "debug Scriptacular: Runtime result: {true, \"120\", \"[\\\"x\\\", \\\"y\\\"]\"}",
                          "debug Scriptacular: Success?: true, browser version: \"120\", "
                          "payload: \"[\\\"x\\\", \\\"y\\\"]\"",
                          "debug Scriptacular: [\"x\",\"y\"]"));
}

TEST_F(ScriptacularRun, SendsAnEmptyListWithoutArgumentsAndKeepsTheTextUntrimmed) {
  std::string fileText;
  world.tasks.answerSuccess("true");
  world.tasks.onInit = [&](const std::filesystem::path& script) { fileText = world.files.files.at(script); };
  EXPECT_TRUE(runTask(world.scriptacular().runScriptText<bool>("\n return 1 \n")));
  EXPECT_EQ(fileText, "\n return 1 \n");
  EXPECT_EQ(world.tasks.events.front().parameters.at(fourCharCode("----")).description(), "{}");
}

TEST_F(ScriptacularRun, GivesTwoRunsOfOneInstantTheirOwnFiles) {
  world.files.folders.insert("/scripts/Temp");
  world.files.files["/scripts/Temp/788918400.25.applescript"] = "another run's";
  world.tasks.answerSuccess("1.5");
  EXPECT_EQ(runTask(world.scriptacular().runScriptText<double>("return 1")), 1.5);
  EXPECT_THAT(world.files.written, ElementsAre("/scripts/Temp/788918400.2500001.applescript"));
  EXPECT_EQ(world.files.files.at("/scripts/Temp/788918400.25.applescript"), "another run's");
}

TEST_F(ScriptacularRun, RefusesABlankText) {
  EXPECT_EQ(failureOfRun(" \n\t\u2028"), "ScriptacularError.missingScript");
  EXPECT_THAT(log.lines(), ElementsAre(errorLine + "No script passed in during initialization"));
  EXPECT_THAT(world.files.folders, SizeIs(1));
}

TEST_F(ScriptacularRun, FailsWithoutAScriptsFolder) {
  world.files.failing = {Operation::applicationScriptsFolder};
  EXPECT_EQ(failureOfRun(), "ScriptacularError.unableToLocateApplicationScriptsFolder");
  EXPECT_THAT(log.lines(), ElementsAre(errorLine + "Unable to locate application scripts folder, this should never "
                                                   "happen. Please contact the developer!"));
  EXPECT_THAT(world.crashReporter.captured, IsEmpty());
}

TEST_F(ScriptacularRun, ReportsATempFolderThatCannotBeMade) {
  world.files.failing = {Operation::createDirectory};
  EXPECT_EQ(failureOfRun(), "ScriptacularError.unableToCreateTempFolder");
  EXPECT_THAT(world.crashReporter.captured, ElementsAre("Couldn't touch “/scripts/Temp”: Permission denied"));
  EXPECT_THAT(log.linesOf("error"),
              ElementsAre(errorLine + errorDescription(ScriptacularError::unableToCreateTempFolder)));
}

TEST_F(ScriptacularRun, DoesNotReportATempThatIsAFile) {
  world.files.files["/scripts/Temp"] = "";
  EXPECT_EQ(failureOfRun(), "ScriptacularError.unableToCreateTempFolder");
  EXPECT_THAT(world.crashReporter.captured, IsEmpty());
  EXPECT_THAT(log.linesOf("error"), SizeIs(1));
}

TEST_F(ScriptacularRun, ReportsAFileThatCannotBeWritten) {
  world.files.failing = {Operation::write};
  EXPECT_EQ(failureOfRun(), "ScriptacularError.unableToWrite");
  const std::string reason = "Couldn't touch “/scripts/Temp/788918400.25.applescript”: Permission denied";
  EXPECT_THAT(world.crashReporter.captured, ElementsAre(reason));
  EXPECT_THAT(log.linesOf("error"), ElementsAre(errorLine + reason));
}

TEST_F(ScriptacularRun, ReportsATaskThatCannotBeMade) {
  world.tasks.onInit = [](const auto&) { throw ScriptError("unreadable"); };
  EXPECT_EQ(failureOfRun(), "ScriptacularError.unableToWrite");
  EXPECT_THAT(world.crashReporter.captured, ElementsAre("unreadable"));
  EXPECT_THAT(log.linesOf("error"), ElementsAre(errorLine + "Couldn't initialize task: unreadable",
                                                errorLine + errorDescription(ScriptacularError::unableToWrite)));
  EXPECT_THAT(world.files.files, IsEmpty());
}

TEST_F(ScriptacularRun, ReportsAFileThatCannotBeRemovedAndKeepsTheOutcome) {
  world.files.failing = {Operation::remove};
  world.tasks.answerSuccess("\"x\"");
  EXPECT_EQ(runTask(world.scriptacular().runScriptText<std::string>("return 1")), "x");
  EXPECT_THAT(world.crashReporter.captured, SizeIs(1));
  EXPECT_THAT(log.linesOf("error"), ElementsAre(errorLine + world.crashReporter.captured.front()));
}

TEST_F(ScriptacularRun, TellsTheKindOfAScriptErrorFromItsWords) {
  struct Row {
    const char* description;
    const char* failure;
  };
  for (const Row& row : std::vector<Row>{
           {"Google Chrome got an error: Can’t get window 1. (-1728)", "ScriptacularError.browserNotFound"},
           {"syntax error: Expected end of line. (-2741)", "ScriptacularError.malformedScript"},
           {"The variable x is not defined. (-2753) -1728", "ScriptacularError.browserNotFound"},
           {"error -2741", "ScriptError.model"},
           {"Invalid type in JSON write (NSNull)", "ScriptacularError.jsonEncodingFailed"},
           {"Invalid type in JSON write (-2700)", "ScriptacularError.malformedScript"},
           {"Executing JavaScript through AppleScript is off: allow Apple Events (12)",
            "ScriptacularError.javascriptFromAppleEventsDisabled"},
           {"Not authorised to send Apple events. (-1743)", "ScriptError.model"},
           {"Not authorised to send Apple Events. (-1743)", "ScriptError.model"},
           {"Application isn’t running. (-600)", "ScriptError.model"}}) {
    const testsupport::LogCapture rowLog;
    world.tasks.onExecute = [&](const auto&) -> platform::Task<ModelScriptTasks::Result> {
      throw ScriptError(row.description);
      co_return std::nullopt;
    };
    EXPECT_EQ(failureOfRun(), row.failure) << row.description;
    EXPECT_TRUE(rowLog.holds(errorLine + "Runtime error: " + row.description));
    EXPECT_THAT(world.files.files, IsEmpty());
  }
  EXPECT_THAT(world.crashReporter.captured, IsEmpty());
}

TEST_F(ScriptacularRun, RefusesResultsOfTheWrongShape) {
  using D = AppleEventDescriptor;
  const std::string malformed = "ScriptacularError.malformedScriptResult";
  EXPECT_EQ(failureOfRun(), malformed);
  EXPECT_THAT(log.linesOf("error"), IsEmpty());
  for (const D& result : {D::list(), D::list({D::boolean(true)}), D::string("x"), D()}) {
    world.tasks.answer(result);
    EXPECT_EQ(failureOfRun(), malformed);
  }
  EXPECT_THAT(log.linesOf("error"), ElementsAre(errorLine + "resultEventDescriptor.numberOfItems: 0",
                                                errorLine + "resultEventDescriptor.numberOfItems: 1",
                                                errorLine + "resultEventDescriptor.numberOfItems: 0",
                                                errorLine + "resultEventDescriptor.numberOfItems: 0"));
  const testsupport::LogCapture pairs;
  world.tasks.answer(D::list({D::boolean(true), D::string("1")}));
  EXPECT_EQ(failureOfRun(), malformed);
  world.tasks.answer(triple(true, D::string("1"), D::integer(4)));
  EXPECT_EQ(failureOfRun(), malformed);
  EXPECT_THAT(pairs.linesOf("error"), ElementsAre(errorLine + "Malformed script result: {true, \"1\"}",
                                                  errorLine + "Malformed script result: {true, \"1\", 4}"));
}

TEST_F(ScriptacularRun, ReadsFailureNumbers) {
  using D = AppleEventDescriptor;
  const std::vector<std::pair<D, std::string>> rows{
      {D::integer(0), "frontAppIsNotABrowser"}, {D::integer(5), "tabNotFound"},   {D::integer(7), "windowNotFound"},
      {D::integer(8), "unknownError"},          {D::integer(-1), "unknownError"}, {D::integer(99), "unknownError"},
      {D::real(4.0), "pageLoadDuringExecution"}};
  for (const auto& [number, caseName] : rows) {
    world.tasks.answer(triple(false, D::string("120"), number));
    EXPECT_EQ(failureOfRun(), "AppleScriptRuntimeError." + caseName);
  }
  EXPECT_THAT(world.versions.recorded, IsEmpty());
  EXPECT_THAT(log.linesOf("error"), IsEmpty());
}

TEST_F(ScriptacularRun, PutsWhatReallyHappenedBeneathAFailure) {
  using D = AppleEventDescriptor;
  const auto causeOf = [&](const std::string& script) -> std::string {
    try {
      runTask(world.scriptacular(script).run<std::string>());
    } catch (const platform::Failure& failure) {
      return failure.cause() ? std::to_string(failure.cause()->line.value_or(0)) + " " + failure.cause()->sentence : "";
    }
    return "none";
  };
  // A line of the program is one of the script's own, comments and empty lines counted.
  for (const auto& [sought, line] : {std::pair("set y to 2", "4"), std::pair("end tell", "0")}) {
    world.tasks.onExecute = [&, sought = sought](const auto& path) -> platform::Task<ModelScriptTasks::Result> {
      const std::string& program = world.files.files.at(path);
      ScriptError error("The variable y is not defined. (-2753)");
      const auto place = static_cast<std::ptrdiff_t>(program.find(sought));
      error.setCause(
          platform::Notice{error.identity(), error.errorDescription(),
                           static_cast<std::size_t>(1 + std::count(program.begin(), program.begin() + place, '\n'))});
      throw error;
      co_return std::nullopt;
    };
    EXPECT_EQ(causeOf("set x to 1\n-- comment\n\n  set y to 2"),
              std::string(line) + " The variable y is not defined. (-2753)");
  }
  world.tasks.answer(triple(false, D::string("120"), D::integer(0)));
  EXPECT_THAT(causeOf("x"), testing::StartsWith("0 The page gave no answer"));
  world.tasks.answer(triple(false, D::string("120"), D::integer(5)));
  EXPECT_EQ(causeOf("x"), "");
  world.tasks.answer(D::string("5"));
  EXPECT_THAT(causeOf("x"), testing::EndsWith("this one gave \"5\"."));
}

TEST_F(ScriptacularRun, RecordsTheVersionsOfSuccessfulActionsOnly) {
  using D = AppleEventDescriptor;
  const auto run = [&](const D& version) {
    world.tasks.answer(triple(true, version, D::string("true")));
    EXPECT_TRUE(runTask(world.scriptacular().run<bool>()));
  };
  run(D::string(""));
  run(D::string(" \n"));
  run(D::other("missing value"));
  EXPECT_THAT(world.versions.recorded, IsEmpty());
  run(D::string(" 120 "));
  EXPECT_THAT(world.versions.recorded, ElementsAre(Pair("com.google.chrome", " 120 ")));
  world.versions.recorded.clear();
  EXPECT_TRUE(runTask(Scriptacular::forOnboarding(world.services()).runScriptText<bool>("return 1")));
  EXPECT_THAT(world.versions.recorded, IsEmpty());
}

TEST_F(ScriptacularRun, RefusesAPayloadOfAnotherType) {
  world.tasks.answerSuccess("{\n\n}");
  EXPECT_EQ(failureOfRun(), "StringError.unableToDecodeJSON");
  EXPECT_THAT(log.linesOf("error"),
              ElementsAre(errorLine + "The JSON has another shape: expected a text, found an object."));
  world.tasks.answerSuccess("{");
  EXPECT_EQ(failureOfRun(), "StringError.unableToDecodeJSON");
  EXPECT_THAT(log.linesOf("error"), SizeIs(2));
  EXPECT_THAT(world.files.files, IsEmpty());
}

TEST_F(ScriptacularRun, RemovesTheFileOfACancelledRun) {
  boost::asio::io_context context;
  boost::asio::cancellation_signal cancellation;
  world.tasks.onExecute = [&](const auto&) -> platform::Task<ModelScriptTasks::Result> {
    EXPECT_THAT(world.files.files, SizeIs(1));
    boost::asio::post(context, [&] { cancellation.emit(boost::asio::cancellation_type::all); });
    boost::asio::steady_timer never(context, std::chrono::steady_clock::time_point::max());
    co_await never.async_wait(boost::asio::use_awaitable);
    co_return std::nullopt;
  };
  std::exception_ptr outcome;
  Scriptacular scriptacular = world.scriptacular();
  boost::asio::co_spawn(
      context, scriptacular.run<std::string>(),
      boost::asio::bind_cancellation_slot(cancellation.slot(),
                                          [&](std::exception_ptr thrown, const std::string&) { outcome = thrown; }));
  context.run();
  EXPECT_THROW(std::rethrow_exception(outcome), boost::system::system_error);
  EXPECT_THAT(world.files.written, SizeIs(1));
  EXPECT_THAT(world.files.files, IsEmpty());
}

class ModelResolver final : public FrontmostResolver {
public:
  int calls = 0;
  platform::Task<TargetContext> resolve(Scriptacular& scriptacular) override {
    ++calls;
    EXPECT_EQ(scriptacular.targetContext(), frontmostTargetContext());
    co_return EngineWorld::safari();
  }
};

TEST_F(ScriptacularRun, ResolvesTheFrontmostBrowserFirst) {
  ModelResolver resolver;
  ScriptacularServices services = world.services();
  services.frontmostResolver = &resolver;
  std::string fileText;
  world.tasks.onInit = [&](const std::filesystem::path& script) { fileText = world.files.files.at(script); };
  world.tasks.answerSuccess("true", "17");
  Scriptacular scriptacular(services, "return success(true)", {}, frontmostTargetContext(), TellSystemEvents::no);
  EXPECT_TRUE(runTask(scriptacular.run<bool>()));
  EXPECT_EQ(scriptacular.targetContext(), EngineWorld::safari());
  EXPECT_THAT(fileText, testing::HasSubstr("tell application id \"com.apple.safari\""));
  EXPECT_THAT(world.versions.recorded, ElementsAre(Pair("com.apple.safari", "17")));

  runTask(Scriptacular(services, "return success(true)", {}, EngineWorld::chrome(), TellSystemEvents::no).run<bool>());
  EXPECT_EQ(resolver.calls, 1);

  services.frontmostResolver = nullptr;
  Scriptacular unresolved(services, "return success(true)", {}, frontmostTargetContext(), TellSystemEvents::no);
  EXPECT_EQ(testsupport::failureName([&] { return runTask(unresolved.run<bool>()); }),
            "AppleScriptRuntimeError.frontAppIsNotABrowser");
}

} // namespace
} // namespace tabwright::engine
