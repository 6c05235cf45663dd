#include "engine/AppleScriptSnippets.h"
#include "engine/Scriptacular.h"
#include "support/FailureText.h"
#include "support/ManualClock.h"
#include "support/MemoryFileManager.h"
#include "support/ModelBrowserProbe.h"
#include "support/ModelScriptTasks.h"
#include "support/RecordingCrashReporter.h"
#include "support/RunTask.h"
#include "targets/FrontmostBrowserResolver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::targets {
namespace {

class NothingInFront final : public platform::Failure {
public:
  std::string errorDescription() const override { return "Can’t get application process 1. (-1728)"; }
  platform::FailureIdentity identity() const override { return {"ScriptError", "model", -1728}; }
};

class FrontmostBrowser : public testing::Test {
protected:
  FrontmostBrowser() {
    tasks.onInit = [this](const std::filesystem::path& script) { programs.push_back(files.files.at(script)); };
  }

  TargetContext resolved() {
    engine::Scriptacular scriptacular(services, "", {{"newUrl", "x"}}, engine::frontmostTargetContext(),
                                      engine::TellSystemEvents::no);
    testsupport::runTask(scriptacular.resolveFrontmostBrowser());
    return scriptacular.targetContext();
  }

  testsupport::ModelBrowserProbe probe{{"chromium", "brave"}, {}};
  TargetContextManager manager{probe};
  FrontmostBrowserResolver resolver{manager};
  testsupport::ManualClock clock;
  testsupport::MemoryFileManager files;
  testsupport::ModelScriptTasks tasks;
  testsupport::RecordingCrashReporter crashReporter;
  engine::ScriptacularServices services{
      .tasks = tasks, .files = files, .clock = clock, .crashReporter = crashReporter, .frontmostResolver = &resolver};
  std::vector<std::string> programs;
};

TEST_F(FrontmostBrowser, IsTheTablesEntryOfTheIdThatTheScriptGives) {
  tasks.answerSuccess("\"org.chromium.chromium\"");
  EXPECT_EQ(resolved(), (TargetContext{"org.chromium.chromium", "Chromium"}));
  const std::vector<std::string> installed{"com.brave.browser", "org.chromium.chromium"};
  EXPECT_EQ(programs, std::vector{engine::AppleScriptSnippets::frontmostScriptText(installed)});
  EXPECT_EQ(tasks.events.back().parameters.at(platform::fourCharCode("----")).numberOfItems(), 0U)
      << "the lookup's handler takes none of the action's arguments";
}

TEST_F(FrontmostBrowser, MustBeInstalled) {
  for (const char* id : {"\"com.google.chrome\"", "\"org.gnome.terminal\"", "\"\""}) {
    tasks.answerSuccess(id);
    EXPECT_EQ(testsupport::failureText([&] { return resolved(); }),
              "The currently active app is not a supported browser");
  }
}

TEST_F(FrontmostBrowser, SaysWhatToDoWhereNothingIsInFront) {
  tasks.onExecute = [](const auto&) -> platform::Task<testsupport::ModelScriptTasks::Result> {
    throw NothingInFront();
    co_return std::nullopt;
  };
  try {
    resolved();
    FAIL();
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.identity().caseName, "browserNotFound");
    ASSERT_TRUE(failure.cause());
    EXPECT_THAT(failure.cause()->sentence, testing::EndsWith("name the one that is meant with targetContext."));
  }
}

} // namespace
} // namespace tabwright::targets
