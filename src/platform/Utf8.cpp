// ICU decides what is well formed. Nearly all texts are, so they are only looked through.
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
  std::optional<std::size_t> bad = malformedByte(text);
  if (!bad)
    return text;
  std::string result;
  std::string_view rest = text;
  for (; bad; bad = malformedByte(rest)) {
    result.append(rest.substr(0, *bad)).append("\uFFFD");
    // One replacement for each byte that belongs to nothing.
    rest.remove_prefix(*bad + 1);
  }
  return result.append(rest);
}

} // namespace tabwright::platform
