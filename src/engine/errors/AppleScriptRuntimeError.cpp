// The English sentences are the keys of their translations.
#include "engine/errors/AppleScriptRuntimeError.h"

#include "platform/FailureTable.h"
#include "platform/StringCatalogue.h"

namespace tabwright::engine {
namespace {

using enum AppleScriptRuntimeError;
constexpr platform::FailureTable<AppleScriptRuntimeError, 8> table{
    "AppleScriptRuntimeError",
    {
        {frontAppIsNotABrowser, "frontAppIsNotABrowser", "The currently active app is not a supported browser"},
        {missingReturnValue, "missingReturnValue",
         "Missing return value, this shouldn't have happened, please contact the developer!"},
        {noOpenWindows, "noOpenWindows", "The browser doesn't have any open windows"},
        {pageElementNotFound, "pageElementNotFound", "The requested page element could not be found"},
        {pageLoadDuringExecution, "pageLoadDuringExecution",
         "While the action was working, the browser page changed. This might happen if a previous action triggered a "
         "page "
         "load but the server took longer to answer than usual."},
        {tabNotFound, "tabNotFound", "The requested tab could not be found"},
        {unknownError, "unknownError",
         "An unknown error occurred, this shouldn't have happened, please contact the developer!"},
        {windowNotFound, "windowNotFound", "The requested window could not be found"},
    }};

} // namespace

std::optional<AppleScriptRuntimeError> appleScriptRuntimeErrorWithRawValue(int rawValue) {
  if (rawValue < 0 || rawValue >= static_cast<int>(table.rows().size()))
    return std::nullopt;
  return static_cast<AppleScriptRuntimeError>(rawValue);
}

std::string errorDescription(AppleScriptRuntimeError error, const std::string&) {
  return platform::localized(table[error].sentence);
}

platform::FailureIdentity identity(AppleScriptRuntimeError error) {
  return table.identity(error, rawValue(error));
}

} // namespace tabwright::engine
