#include "app/FailureReport.h"
#include "applescript/ScriptError.h"
#include "engine/errors/ScriptacularError.h"
#include "host/workflow/Problem.h"
#include "intents/NeedsValue.h"
#include "intents/UsageError.h"
#include "intents/ValueError.h"
#include "platform/JSONFailure.h"
#include "rpc/RpcError.h"
#include "scripting/driver/DriverFault.h"

#include <gtest/gtest.h>

namespace tabwright::app {
namespace {

using applescript::ScriptError;
using engine::ScriptacularError;
using platform::failure;
using scripting::DriverFault;

void expectCode(ExitCode code, const platform::Failure& failure) {
  EXPECT_EQ(exitCodeOf(failure), code) << failure.errorDescription();
}

TEST(FailureReport, TellsByItsCodeWhoMayHelp) {
  expectCode(ExitCode::wrongUse, intents::UsageError("There is no such action."));
  expectCode(ExitCode::wrongUse, intents::NeedsValue("cssSelector", "Which element?"));
  expectCode(ExitCode::wrongUse, intents::ValueError("can't be so."));
  expectCode(ExitCode::wrongUse, platform::JSONFailure("it is empty", ""));
  expectCode(ExitCode::wrongUse,
             host::workflow::InvalidWorkflow(std::vector<host::workflow::Problem>{{{}, "It has no steps."}}));
  expectCode(ExitCode::noBrowser, failure(ScriptacularError::browserNotFound));
  expectCode(ExitCode::noBrowser, failure(ScriptacularError::javascriptFromAppleEventsDisabled));
  expectCode(ExitCode::noBrowser, failure(DriverFault::lost, "it ended"));
  for (const int number : {-600, -609, -1743})
    expectCode(ExitCode::noBrowser, ScriptError(ScriptError::Stage::execution, number, "It is gone."));
  expectCode(ExitCode::failed, ScriptError(ScriptError::Stage::execution, -1728, "Can’t get it."));
  expectCode(ExitCode::failed, failure(ScriptacularError::malformedScript));
  expectCode(ExitCode::failed, failure(DriverFault::malformedAnswer, "a: the key is missing"));
  expectCode(ExitCode::failed, rpc::RpcError(-1, "from elsewhere"));
}

TEST(FailureReport, AFailedStepCountsAsWhatItFailedWith) {
  const auto cause = failure(DriverFault::notRunning, "Chromium");
  expectCode(ExitCode::noBrowser,
             host::workflow::StepFailure({}, "ClickElement", cause.errorDescription(), "", cause.identity()));
}

} // namespace
} // namespace tabwright::app
