// The HTML standard's "character reference state" and those behind it. The names are a resource.
#include "html/CharacterReferences.h"

#include "tabwright_htmlResources.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <unordered_map>

namespace tabwright::html {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD"; // U+FFFD
constexpr std::size_t longestName = 32;

constexpr bool isDigit(char character) {
  return character >= '0' && character <= '9';
}
constexpr bool isAlphanumeric(char character) {
  return isDigit(character) || (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

std::string utf8(std::uint32_t character) {
  std::array<char, 4> bytes{};
  std::int32_t length = 0;
  U8_APPEND_UNSAFE(bytes.data(), length, character);
  return {bytes.data(), static_cast<std::size_t>(length)};
}

// Rows "name code [code]", the codes in hexadecimal. A semicolon belongs to the name.
const std::unordered_map<std::string_view, std::string>& namedCharacters() {
  static const std::unordered_map<std::string_view, std::string> table = [] {
    std::unordered_map<std::string_view, std::string> rows;
    for (std::string_view rest = resources::characterReferences_txt; !rest.empty();) {
      std::string_view row = rest.substr(0, rest.find('\n'));
      rest.remove_prefix(row.size() + 1);
      std::string& characters = rows[row.substr(0, row.find(' '))];
      for (std::size_t blank = row.find(' '); blank != std::string_view::npos; blank = row.find(' ', blank + 1)) {
        std::uint32_t code = 0;
        std::from_chars(row.data() + blank + 1, row.data() + row.size(), code, 16);
        characters += utf8(code);
      }
    }
    return rows;
  }();
  return table;
}

// Numbers of Windows-1252's own characters mean those. Zero: as it is.
constexpr std::array<std::uint16_t, 32> windowsCharacters = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// The length of a number's reference "#…" at the beginning of `text`, 0 if there is none.
std::size_t appendNumber(std::string_view text, std::string& out) {
  const bool isHexadecimal = text.size() > 1 && (text[1] == 'x' || text[1] == 'X');
  const char* const begin = text.data() + (isHexadecimal ? 2 : 1);
  std::uint32_t code = 0;
  const auto [end, fault] = std::from_chars(begin, text.data() + text.size(), code, isHexadecimal ? 16 : 10);
  if (end == begin)
    return 0;
  if (code >= 0x80 && code < 0xA0 && windowsCharacters[code - 0x80] != 0)
    code = windowsCharacters[code - 0x80];
  const bool isCharacter = fault == std::errc() && code != 0 && code <= 0x10FFFF && !U_IS_SURROGATE(code);
  out += isCharacter ? utf8(code) : replacement;
  const auto length = static_cast<std::size_t>(end - text.data());
  return length + (length < text.size() && text[length] == ';' ? 1 : 0);
}

// The same for a name: the longest that the table has.
std::size_t appendNamed(std::string_view text, TextPlace place, std::string& out) {
  const auto end = std::find_if_not(text.begin(), text.begin() + std::min(text.size(), longestName), isAlphanumeric);
  auto length = static_cast<std::size_t>(end - text.begin());
  length += length < text.size() && text[length] == ';' ? 1 : 0;
  // The longest name that is there counts: "&notit;" is "&not" and "it;".
  for (; length > 1; --length) {
    const auto row = namedCharacters().find(text.substr(0, length));
    if (row == namedCharacters().end())
      continue;
    // Addresses such as "?a=1&copy=2" keep their text though "&copy" is a name.
    const char behind = length < text.size() ? text[length] : '\0';
    if (place == TextPlace::attribute && text[length - 1] != ';' && (behind == '=' || isAlphanumeric(behind)))
      return 0;
    out += row->second;
    return length;
  }
  return 0;
}

} // namespace

// Most texts have no mark and are given back as they stand, without a copy.
std::string_view readText(std::string_view text, TextPlace place, std::string& room) {
  // With their lengths, since NUL is one of them.
  const std::string_view marks(place == TextPlace::raw ? "\r\0" : "\r\0&", place == TextPlace::raw ? 2 : 3);
  std::size_t mark = text.find_first_of(marks);
  if (mark == std::string_view::npos)
    return text;
  room.clear();
  while (mark != std::string_view::npos) {
    room += text.substr(0, mark);
    const char character = text[mark];
    text.remove_prefix(mark + 1);
    if (character == '\r') {
      room += '\n';
      text.remove_prefix(text.starts_with('\n') ? 1 : 0);
    } else if (character == '\0') {
      room += place == TextPlace::content ? "" : replacement;
    } else {
      const std::size_t length = text.starts_with('#') ? appendNumber(text, room) : appendNamed(text, place, room);
      if (length == 0)
        room += '&';
      text.remove_prefix(length);
    }
    mark = text.find_first_of(marks);
  }
  room += text;
  return room;
}

} // namespace tabwright::html
