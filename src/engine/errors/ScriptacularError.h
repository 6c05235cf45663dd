#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::engine {

/// The failures around a script: with its text, its file, the browser, or the shape of its result.
enum class ScriptacularError {
  browserNotFound,
  emptyScriptResult,
  javascriptFromAppleEventsDisabled,
  jsonEncodingFailed,
  malformedScript,
  malformedScriptResult,
  missingScript,
  unableToCreateTempFolder,
  unableToLocateApplicationScriptsFolder,
  unableToWrite,
};

/// The sentence for the user. `detail` is not used.
[[nodiscard]] std::string errorDescription(ScriptacularError error, const std::string& detail = {});
[[nodiscard]] platform::FailureIdentity identity(ScriptacularError error);

} // namespace tabwright::engine
