#pragma once

#include "engine/errors/ScriptacularError.h"

#include <optional>
#include <string_view>

namespace tabwright::engine {

/// The catalogue's case for a script that ended in an error, told from the error's description; nothing when none fits,
/// and the error itself is what the user should see.
[[nodiscard]] std::optional<ScriptacularError> scriptacularErrorOf(std::string_view runtimeErrorDescription);

} // namespace tabwright::engine
