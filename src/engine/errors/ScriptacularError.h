#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::engine {

/// The failures around a script: with its text, its file, the browser, or the shape of its result.
enum class ScriptacularError {
  /// An application or object of the script can't be got (-1728): the browser isn't installed.
  browserNotFound,
  /// Of the catalogue; no run ends in it.
  emptyScriptResult,
  /// The browser takes no JavaScript from scripts until its user allows it.
  javascriptFromAppleEventsDisabled,
  /// The script's value holds something that JSON has no form for.
  jsonEncodingFailed,
  /// The program doesn't compile; the cause has the line.
  malformedScript,
  /// The result is not the list that the library's handlers make, or there is none.
  malformedScriptResult,
  /// The program is empty, or white space alone.
  missingScript,
  /// The folder of programs can't be made, or a file stands in its place.
  unableToCreateTempFolder,
  unableToLocateApplicationScriptsFolder,
  /// The program's file can't be written, or not be read back.
  unableToWrite,
};

/// The sentence for the user. `detail` is not used.
[[nodiscard]] std::string errorDescription(ScriptacularError error, const std::string& detail = {});
[[nodiscard]] platform::FailureIdentity identity(ScriptacularError error);

} // namespace tabwright::engine
