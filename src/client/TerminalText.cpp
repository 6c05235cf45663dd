// No table of Unicode's properties is at hand here: the characters that do harm are few, and stand in ranges that don't
// change.
#include "client/TerminalText.h"

#include "session/UTF8.h"

#include <algorithm>
#include <cstdint>

namespace tabwright::client {
namespace {

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

constexpr Range harmful[]{
    {0x00, 0x08},     {0x0B, 0x1F},     {0x7F, 0x9F},     // controls but for tab and line feed
    {0x061C, 0x061C}, {0x200E, 0x200F}, {0x202A, 0x202E}, // marks of direction
    {0x2066, 0x2069},
};

bool isHarmful(std::uint32_t point) {
  return std::ranges::any_of(harmful, [=](const Range& range) { return range.first <= point && point <= range.last; });
}

} // namespace

std::string terminalText(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const session::UTF8Character character = session::characterAt(text, at);
    if (character.length == 0) {
      // One byte at a time, as the next one may begin a character.
      result += "\uFFFD";
      ++at;
      continue;
    }
    if (!isHarmful(character.point))
      result += text.substr(at, character.length);
    at += character.length;
  }
  return result;
}

} // namespace tabwright::client
