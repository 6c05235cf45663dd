#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// The number of characters as a reader counts them: extended grapheme clusters of Unicode Standard Annex #29, so that
/// a letter with its marks, or a flag, is one. UTF-8. 0 for the empty text.
///
///     characterCount("e\u0301")    // 1: a letter with its accent
[[nodiscard]] std::size_t characterCount(std::string_view text);

/// The text in lower case by Unicode's rules, those of no language in particular. UTF-8. Ill-formed bytes become
/// U+FFFD. The text may get longer or shorter by it.
[[nodiscard]] std::string inLowerCase(std::string_view text);

} // namespace tabwright::platform
