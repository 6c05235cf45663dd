// The English sentences are the keys of their translations.
#include "engine/errors/ScriptacularError.h"

#include "platform/StringCatalogue.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tabwright::engine {
namespace {

struct Row {
  ScriptacularError error;
  std::string_view caseName;
  std::string_view message;
};

using enum ScriptacularError;
constexpr std::array<Row, 10> rows{{
    {browserNotFound, "browserNotFound", "It appears this browser isn't installed!"},
    {emptyScriptResult, "emptyScriptResult", "Empty result"},
    {javascriptFromAppleEventsDisabled, "javascriptFromAppleEventsDisabled",
     "This action requires you to to allow \"JavaScript from Apple Events\" in your browser, see "
     "https://tabwright.app/-js"},
    {jsonEncodingFailed, "jsonEncodingFailed", "Value couldn't be JSON encoded"},
    {malformedScript, "malformedScript", "Malformed script"},
    {malformedScriptResult, "malformedScriptResult", "Malformed result"},
    {missingScript, "missingScript", "Missing job"},
    {unableToCreateTempFolder, "unableToCreateTempFolder",
     "Tabwright wasn't able to write a temporary folder. There might be a permissions problem. Please open the app and "
     "press the \"Set up Tabwright\" button to set it up again."},
    {unableToLocateApplicationScriptsFolder, "unableToLocateApplicationScriptsFolder",
     "Unable to locate application scripts folder, this should never happen. Please contact the developer!"},
    {unableToWrite, "unableToWrite",
     "Tabwright wasn't able to write a temporary file. There might be a permissions problem. Please open the app and "
     "press the \"Set up Tabwright\" button to set it up again."},
}};

consteval bool rowsStandInTheOrderOfTheCases() {
  for (std::size_t index = 0; index < rows.size(); ++index) {
    if (static_cast<std::size_t>(rows[index].error) != index)
      return false;
  }
  return true;
}
static_assert(rowsStandInTheOrderOfTheCases());

const Row& rowOf(ScriptacularError error) {
  return rows.at(static_cast<std::size_t>(error));
}

} // namespace

std::string errorDescription(ScriptacularError error, const std::string&) {
  return platform::localized(rowOf(error).message);
}

platform::FailureIdentity identity(ScriptacularError error) {
  return {"ScriptacularError", std::string(rowOf(error).caseName), std::nullopt};
}

} // namespace tabwright::engine
