#include "platform/Utf8.h"

#include <unicode/utf8.h>

#include <cstdint>

namespace tabwright::platform {

std::optional<std::size_t> malformedByte(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto size = static_cast<std::int64_t>(text.size());
  for (std::int64_t next = 0; next < size;) {
    const std::int64_t begin = next;
    UChar32 character = 0;
    U8_NEXT(bytes, next, size, character);
    if (character < 0)
      return static_cast<std::size_t>(begin);
  }
  return std::nullopt;
}

std::string wellFormed(std::string text) {
  for (std::optional<std::size_t> bad = malformedByte(text); bad;) {
    text.replace(*bad, 1, "\uFFFD");
    const auto rest = malformedByte(std::string_view(text).substr(*bad));
    bad = rest ? std::optional(*bad + *rest) : std::nullopt;
  }
  return text;
}

} // namespace tabwright::platform
