// The first row whose words are all in the description wins. The descriptions are AppleScript's own, with the error's
// number in parentheses: -1728 for an object that can't be got, -27… for a script that doesn't compile.
#include "engine/ScriptFailureMapping.h"

#include <array>

namespace tabwright::engine {
namespace {

struct Row {
  std::string_view first;
  std::string_view second; // empty: the first is enough
  ScriptacularError error;
};

constexpr std::array<Row, 4> rows{{
    {"-1728", "", ScriptacularError::browserNotFound},
    {"(-27", "", ScriptacularError::malformedScript},
    {"Invalid type in JSON write", "", ScriptacularError::jsonEncodingFailed},
    {"Apple Events", "JavaScript", ScriptacularError::javascriptFromAppleEventsDisabled},
}};

} // namespace

std::optional<ScriptacularError> scriptacularErrorOf(std::string_view runtimeErrorDescription) {
  for (const Row& row : rows) {
    if (runtimeErrorDescription.find(row.first) != std::string_view::npos &&
        runtimeErrorDescription.find(row.second) != std::string_view::npos)
      return row.error;
  }
  return std::nullopt;
}

} // namespace tabwright::engine
