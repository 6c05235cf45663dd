#pragma once

#include "app/RunAction.h"
#include "host/ParameterReader.h"
#include "intents/ActionHost.h"
#include "intents/NeedsValue.h"

#include <optional>
#include <string>

namespace tabwright::app {

/// Asks the caller's user for a missing value, and yields it as written on a command line; nothing when there is nobody
/// to ask or the input has ended. Where a tab or a window is missing, those of the browser are shown with numbers, and
/// a number is an answer: its item comes as JSON. The value isn't checked, so the next run may refuse it and ask again.
/// Throws what listing them throws. Everything outlives it.
platform::Task<std::optional<std::string>> askForValue(const host::Catalogue& catalogue, const ActionRun& run,
                                                       const host::ParameterTexts& parameters,
                                                       const intents::NeedsValue& missing, RunCaller& caller,
                                                       intents::ActionHost& host);

} // namespace tabwright::app
