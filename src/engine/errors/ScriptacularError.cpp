// The English sentences are the keys of their translations.
#include "engine/errors/ScriptacularError.h"

#include "platform/FailureTable.h"
#include "platform/StringCatalogue.h"

namespace tabwright::engine {
namespace {

using enum ScriptacularError;
using platform::FailureClass;
constexpr platform::FailureTable<ScriptacularError, 10> scriptacularErrors{
    "ScriptacularError",
    {
        {browserNotFound, "browserNotFound", "It appears this browser isn't installed!", FailureClass::notFound},
        {emptyScriptResult, "emptyScriptResult", "Empty result"},
        {javascriptFromAppleEventsDisabled, "javascriptFromAppleEventsDisabled",
         "This action requires you to to allow \"JavaScript from Apple Events\" in your browser, see "
         "https://tabwright.app/-js",
         FailureClass::unreachable},
        {jsonEncodingFailed, "jsonEncodingFailed", "Value couldn't be JSON encoded"},
        {malformedScript, "malformedScript", "Malformed script"},
        {malformedScriptResult, "malformedScriptResult", "Malformed result"},
        {missingScript, "missingScript", "Missing job"},
        {unableToCreateTempFolder, "unableToCreateTempFolder",
         "Tabwright wasn't able to write a temporary folder. There might be a permissions problem. Please open the app "
         "and "
         "press the \"Set up Tabwright\" button to set it up again."},
        {unableToLocateApplicationScriptsFolder, "unableToLocateApplicationScriptsFolder",
         "Unable to locate application scripts folder, this should never happen. Please contact the developer!"},
        {unableToWrite, "unableToWrite",
         "Tabwright wasn't able to write a temporary file. There might be a permissions problem. Please open the app "
         "and "
         "press the \"Set up Tabwright\" button to set it up again."},
    }};

} // namespace

std::string errorDescription(ScriptacularError error, const std::string&) {
  return platform::localized(scriptacularErrors[error].sentence);
}

platform::FailureIdentity identity(ScriptacularError error) {
  return scriptacularErrors.identity(error);
}

} // namespace tabwright::engine
