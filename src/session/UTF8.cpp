#include "session/UTF8.h"

namespace tabwright::session {

UTF8Character characterAt(std::string_view text, std::size_t index) {
  const auto first = static_cast<unsigned char>(text[index]);
  // By Unicode's table of well-formed sequences: 0xC0 and 0xC1 would begin characters written too long, and those from
  // 0xF5 on ones beyond U+10FFFF.
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
  if (length == 0 || index + length > text.size())
    return {};
  std::uint32_t point = length == 1 ? first : first & (0x7FU >> length);
  for (std::size_t next = index + 1; next < index + length; ++next) {
    const auto byte = static_cast<unsigned char>(text[next]);
    if ((byte & 0xC0U) != 0x80)
      return {};
    point = point << 6 | (byte & 0x3FU);
  }
  const bool isSurrogate = point >= 0xD800 && point < 0xE000;
  if (isSurrogate || (length == 3 && point < 0x800) || (length == 4 && (point < 0x10000 || point > 0x10FFFF)))
    return {};
  return {.point = point, .length = length};
}

bool isUTF8(std::string_view text) {
  for (std::size_t index = 0; index < text.size();) {
    const std::size_t length = characterAt(text, index).length;
    if (length == 0)
      return false;
    index += length;
  }
  return true;
}

} // namespace tabwright::session
