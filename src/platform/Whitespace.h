#pragma once

#include <string_view>

namespace tabwright::platform {

/// `text` (UTF-8) without white space and line breaks at both ends: all characters with Unicode's property White_Space.
/// A view into the same characters. It is valid as long as they are. Bytes that are no UTF-8 aren't white space, and
/// stay.
///
///     trimmingWhitespaceAndNewlines("\u00a0tab \n")    // tab
[[nodiscard]] std::string_view trimmingWhitespaceAndNewlines(std::string_view text);

/// True for a text of nothing but white space and line breaks, the empty one included.
[[nodiscard]] inline bool isBlank(std::string_view text) {
  return trimmingWhitespaceAndNewlines(text).empty();
}

} // namespace tabwright::platform
