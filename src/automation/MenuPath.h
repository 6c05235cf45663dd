#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::automation {

/// The titles of a path as users write it: "File > Export…" has two. Any number of ">" (or U+10018A), with blanks
/// around them, stands between titles; titles that are empty are left out.
[[nodiscard]] std::vector<std::string> segmentsOfPath(std::string_view path);

/// The path of these titles: "File > Export…".
/// Not the inverse where a title holds a ">" itself.
[[nodiscard]] std::string pathOf(std::span<const std::string> segments);

} // namespace tabwright::automation
