#pragma once

#include <string>
#include <string_view>

namespace tabwright::applescript {

/// Two names of a script (variables, handlers, labels) are one: case doesn't count, by the full case folding of
/// Unicode. Not normalised: an accent composed with its letter and one behind it make two names.
[[nodiscard]] bool sameName(std::string_view left, std::string_view right);

/// The name may stand in source without bars, unless the word means something else there: letters and digits of ASCII
/// and underscores, with no digit in front.
[[nodiscard]] bool isIdentifier(std::string_view name);

/// The form of a name under which tables keep it: equal for names that are the same.
[[nodiscard]] std::string foldedName(std::string_view name);

} // namespace tabwright::applescript
