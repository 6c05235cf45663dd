#pragma once

#include <string>
#include <string_view>

namespace tabwright::platform {

/// A text in Unicode's full case folding: two texts that differ in case alone have the same. Ill-formed UTF-8 becomes
/// U+FFFD. For names that users read; identifiers go by AsciiCase.h. For comparing only, not for showing: “ß” becomes
/// “ss”. Independent of the user's language.
[[nodiscard]] std::string caseFolded(std::string_view text);

} // namespace tabwright::platform
