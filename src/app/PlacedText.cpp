#include "app/PlacedText.h"

#include "applescript/SourceRange.h"
#include "platform/Utf8.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::app {
namespace {

bool beginsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u;
}

} // namespace

std::string placedText(const std::string& name, std::string_view source, std::size_t offset, std::size_t length,
                       std::string_view sentence) {
  offset = std::min(offset, source.size());
  if (constexpr std::string_view blanks = " \t\r\n"; source.find_first_not_of(blanks, offset) == std::string_view::npos)
    offset = std::min(offset, source.find_last_not_of(blanks) + 1);
  const applescript::SourcePosition position = applescript::positionOf(source, offset);
  const std::size_t start = offset == 0 ? 0 : source.find_last_of("\r\n", offset - 1) + 1;
  const std::size_t end = std::min(source.find_first_of("\r\n", offset), source.size());
  const std::string_view line = source.substr(start, end - start);
  std::string margin;
  for (const char character : source.substr(start, offset - start)) {
    // A tab stays one, so that the mark stands below its place whatever a tab's width.
    if (character == '\t')
      margin += '\t';
    else if (beginsCharacter(character))
      margin += ' ';
  }
  const std::string_view marked = source.substr(offset, std::min(length, end - offset));
  // At least one, where nothing is left to be marked: at the end of a line.
  const auto carets =
      static_cast<std::size_t>(std::max<std::ptrdiff_t>(1, std::ranges::count_if(marked, beginsCharacter)));
  return fmt::format("{}:{}:{}: {}\n{}\n{}{}\n", name, position.line, position.column, sentence,
                     platform::wellFormed(std::string(line)), margin, std::string(carets, '^'));
}

} // namespace tabwright::app
