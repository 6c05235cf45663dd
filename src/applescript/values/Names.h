#pragma once

#include <string>
#include <string_view>

namespace tabwright::applescript {

/// Two names of a script (variables, handlers, labels) are one: case doesn't count.
[[nodiscard]] bool sameName(std::string_view left, std::string_view right);

/// The name may stand in source without bars, unless the word means something else there.
[[nodiscard]] bool isIdentifier(std::string_view name);

/// The form of a name under which tables keep it: equal for names that are the same.
[[nodiscard]] std::string foldedName(std::string_view name);

} // namespace tabwright::applescript
