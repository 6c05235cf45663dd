// Widths follow Unicode's East Asian Width property, as terminals do; ambiguous characters count one cell. Texts are
// walked by code points: marks take no cell, so they need not be joined with their letters.
#include "platform/TerminalCells.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace tabwright::platform {
namespace {

constexpr UChar32 replacement = 0xFFFD;
constexpr std::string_view ellipsis = "…";

UChar32 next(std::string_view text, std::size_t& at) {
  auto index = static_cast<std::int64_t>(at);
  UChar32 character = 0;
  U8_NEXT(reinterpret_cast<const std::uint8_t*>(text.data()), index, static_cast<std::int64_t>(text.size()), character);
  at = static_cast<std::size_t>(index);
  // ICU tells ill-formed bytes by a negative number, and has gone past them.
  return character < 0 ? replacement : character;
}

void append(std::string& text, UChar32 character) {
  std::uint8_t bytes[U8_MAX_LENGTH];
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, character);
  text.append(reinterpret_cast<const char*>(bytes), length);
}

// Controls, and the marks that turn the direction of what follows: a page's title must not repaint the line.
bool isHarmful(UChar32 character) {
  return u_charType(character) == U_CONTROL_CHAR || (character >= 0x202A && character <= 0x202E) ||
         (character >= 0x2066 && character <= 0x2069);
}

std::size_t cellsOf(UChar32 character) {
  switch (u_charType(character)) {
  case U_NON_SPACING_MARK:
  case U_ENCLOSING_MARK:
  case U_FORMAT_CHAR:
    return 0;
  default:
    break;
  }
  // Vowels and final consonants of Korean join the letter before them.
  const int syllable = u_getIntPropertyValue(character, UCHAR_HANGUL_SYLLABLE_TYPE);
  if (syllable == U_HST_VOWEL_JAMO || syllable == U_HST_TRAILING_JAMO)
    return 0;
  const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

} // namespace

std::size_t cellsOf(std::string_view text) {
  std::size_t cells = 0;
  for (std::size_t at = 0; at < text.size();)
    cells += cellsOf(next(text, at));
  return cells;
}

std::string onOneLine(std::string_view text) {
  std::string line;
  bool isBlankDue = false;
  for (std::size_t at = 0; at < text.size();) {
    const UChar32 character = next(text, at);
    if (isHarmful(character) || u_isUWhiteSpace(character)) {
      // A blank is written with the next character only, so that none stands at either end.
      isBlankDue = !line.empty();
      continue;
    }
    if (isBlankDue)
      line += ' ';
    isBlankDue = false;
    append(line, character);
  }
  return line;
}

std::string harmless(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const UChar32 character = next(text, at);
    if (character == '\n' || character == '\t' || !isHarmful(character))
      append(result, character);
  }
  return result;
}

std::string fitted(std::string_view text, std::size_t cells) {
  if (cellsOf(text) <= cells)
    return std::string(text);
  std::string result;
  // It is paid for first, so that what follows never has to be taken back.
  std::size_t used = 1; // the ellipsis
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    // Marks take no cell, so they go along with the letter before them.
    used += cellsOf(next(text, at));
    if (used > cells)
      break;
    result += text.substr(start, at - start);
  }
  return cells == 0 ? result : result.append(ellipsis);
}

std::string wrapped(std::string_view text, std::size_t indent, std::size_t width) {
  std::string lines;
  std::size_t used = 0; // of the last line, its indent included; 0 before there is one
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find(' ', start), text.size());
    const std::string_view word = text.substr(start, end - start);
    start = end + 1;
    // Several blanks in a row part words as one does.
    if (word.empty())
      continue;
    const std::size_t cells = cellsOf(word);
    const bool isOnNext = used == 0 || used + 1 + cells > width;
    if (isOnNext)
      lines.append(used == 0 ? "" : "\n").append(indent, ' ');
    else
      lines += ' ';
    used = (isOnNext ? indent : used + 1) + cells;
    lines += word;
  }
  return lines.empty() ? lines : lines + "\n";
}

} // namespace tabwright::platform
