// The English sentences are the keys of their translations.
#include "engine/errors/AppleScriptRuntimeError.h"

#include "platform/StringCatalogue.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tabwright::engine {
namespace {

struct Row {
  AppleScriptRuntimeError error;
  std::string_view caseName;
  std::string_view message;
};

using enum AppleScriptRuntimeError;
constexpr std::array<Row, 8> rows{{
    {frontAppIsNotABrowser, "frontAppIsNotABrowser", "The currently active app is not a supported browser"},
    {missingReturnValue, "missingReturnValue",
     "Missing return value, this shouldn't have happened, please contact the developer!"},
    {noOpenWindows, "noOpenWindows", "The browser doesn't have any open windows"},
    {pageElementNotFound, "pageElementNotFound", "The requested page element could not be found"},
    {pageLoadDuringExecution, "pageLoadDuringExecution",
     "While the action was working, the browser page changed. This might happen if a previous action triggered a page "
     "load but the server took longer to answer than usual."},
    {tabNotFound, "tabNotFound", "The requested tab could not be found"},
    {unknownError, "unknownError",
     "An unknown error occurred, this shouldn't have happened, please contact the developer!"},
    {windowNotFound, "windowNotFound", "The requested window could not be found"},
}};

consteval bool rowsStandAtTheirNumbers() {
  for (std::size_t index = 0; index < rows.size(); ++index) {
    if (rawValue(rows[index].error) != static_cast<int>(index))
      return false;
  }
  return true;
}
static_assert(rowsStandAtTheirNumbers());

const Row& rowOf(AppleScriptRuntimeError error) {
  return rows.at(static_cast<std::size_t>(rawValue(error)));
}

} // namespace

std::optional<AppleScriptRuntimeError> appleScriptRuntimeErrorWithRawValue(int rawValue) {
  if (rawValue < 0 || rawValue >= static_cast<int>(rows.size()))
    return std::nullopt;
  return rows[static_cast<std::size_t>(rawValue)].error;
}

std::string errorDescription(AppleScriptRuntimeError error, const std::string&) {
  return platform::localized(rowOf(error).message);
}

platform::FailureIdentity identity(AppleScriptRuntimeError error) {
  return {"AppleScriptRuntimeError", std::string(rowOf(error).caseName), rawValue(error)};
}

} // namespace tabwright::engine
