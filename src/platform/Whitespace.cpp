// Walks in from both ends, one code point at a time.
#include "platform/Whitespace.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tabwright::platform {

std::string_view trimmingWhitespaceAndNewlines(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::size_t first = 0;
  std::size_t last = text.size();
  while (first < last) {
    std::size_t next = first;
    UChar32 character = 0;
    U8_NEXT(bytes, next, last, character);
    if (character < 0 || !u_isUWhiteSpace(character))
      break;
    first = next;
  }
  while (last > first) {
    // ICU's backward step counts in 32 bits, and no character is longer than four bytes.
    const auto window = static_cast<std::int32_t>(std::min<std::size_t>(last - first, 4));
    std::int32_t previous = window;
    UChar32 character = 0;
    U8_PREV(bytes + last - window, 0, previous, character);
    if (character < 0 || !u_isUWhiteSpace(character))
      break;
    last -= static_cast<std::size_t>(window - previous);
  }
  return text.substr(first, last - first);
}

} // namespace tabwright::platform
