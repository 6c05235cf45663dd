#pragma once

#include "platform/Failure.h"

#include <optional>
#include <string>

namespace tabwright::engine {

/// The failures that a generated script reports. The numbers are what scripts pass to `failure(…)`.
enum class AppleScriptRuntimeError : int {
  frontAppIsNotABrowser = 0, ///< also: the script ended without a result
  /// Of the catalogue; no script of ours passes it.
  missingReturnValue = 1,
  noOpenWindows = 2,
  /// No element showed up in the time that an action waits for one.
  pageElementNotFound = 3,
  /// The page that a job was planted in went before it had a result.
  pageLoadDuringExecution = 4,
  tabNotFound = 5,
  /// Any number that has no case.
  unknownError = 6,
  windowNotFound = 7,
};

/// The number in scripts.
[[nodiscard]] constexpr int rawValue(AppleScriptRuntimeError error) {
  return static_cast<int>(error);
}
/// The case of a number; nothing for a number that has none.
[[nodiscard]] std::optional<AppleScriptRuntimeError> appleScriptRuntimeErrorWithRawValue(int rawValue);

/// The sentence for the user. `detail` is not used.
[[nodiscard]] std::string errorDescription(AppleScriptRuntimeError error, const std::string& detail = {});
/// With the script's number.
[[nodiscard]] platform::FailureIdentity identity(AppleScriptRuntimeError error);

} // namespace tabwright::engine
