// Goes through the text once, line by line, and keeps account of what the run of lines since the last blank one costs.
// Markup is switched off by a noncharacter before it: unlike a backslash that can be taken out of code again. The
// account is that of the parser's work, not of the text's length, so it need not know the grammar: lines that could be
// dear count as dear, and ordinary texts stay below the bounds.
#include "markdown/MarkupLimits.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace tabwright::markdown {
namespace {

constexpr std::string_view mark = "\xEF\xB7\x90"; // U+FDD0
constexpr std::string_view blanks = " \t";
constexpr std::size_t deepestMarker = 128;
constexpr std::size_t mostColumns = 128;
constexpr std::size_t longestRun = 32UL * 1024;
constexpr std::size_t delimiterRowCost = 1024; // each makes the parser read the paragraph before it again
// The longest number of a list item in CommonMark.
constexpr std::size_t longestNumber = 9;

bool isBlankAt(std::string_view line, std::size_t at) {
  return at >= line.size() || blanks.contains(line[at]);
}

// The end of the quote or list marker at `at`, if there is one.
std::optional<std::size_t> endOfMarker(std::string_view line, std::size_t at) {
  if (line[at] == '>')
    return at + 1;
  if (std::string_view("-+*").contains(line[at]))
    return isBlankAt(line, at + 1) ? std::optional(at + 1) : std::nullopt;
  const std::size_t digits = std::min(line.find_first_not_of("0123456789", at), line.size()) - at;
  const std::size_t end = at + digits;
  if (digits == 0 || digits > longestNumber || end >= line.size() || (line[end] != '.' && line[end] != ')'))
    return std::nullopt;
  return isBlankAt(line, end + 1) ? std::optional(end + 1) : std::nullopt;
}

// The place of the first marker that may not nest any more.
std::optional<std::size_t> excessiveMarker(std::string_view line) {
  std::size_t at = 0;
  while (at < line.size()) {
    if (blanks.contains(line[at])) {
      ++at;
      continue;
    }
    const std::optional<std::size_t> end = endOfMarker(line, at);
    if (!end)
      return std::nullopt;
    if (at >= deepestMarker)
      return at;
    at = *end;
  }
  return std::nullopt;
}

// A list item that interrupts whatever stands before it; deeper indented it could go on with a paragraph.
bool startsItem(std::string_view line) {
  const std::size_t at = line.find_first_not_of(' ');
  if (at > 3 || !std::string_view("-+*").contains(line[at]))
    return false;
  return isBlankAt(line, at + 1) && line.find_first_not_of(" \t-+*", at) != std::string_view::npos;
}

// The columns of a table whose delimiter row this line would be, inside of any quote or item.
std::size_t columnsOf(std::string_view line) {
  // Cheap and generous: a line that only looks like one costs a little of the run's account.
  const bool isDelimiter = line.contains('-') && line.find_first_of("|:") != std::string_view::npos &&
                           line.find_first_not_of("|:- \t>*+0123456789.)") == std::string_view::npos;
  return isDelimiter ? static_cast<std::size_t>(std::ranges::count(line, '|')) + 1 : 0;
}

class Limiter {
public:
  std::string limited(std::string_view text) {
    result_.reserve(text.size() + text.size() / 64);
    while (!text.empty()) {
      const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
      addLine(text.substr(0, end));
      const std::size_t next = end + (text.substr(end).starts_with("\r\n") ? 2 : 1); // one end of a line, not two
      result_ += text.substr(end, next - end);
      text.remove_prefix(std::min(next, text.size()));
    }
    return std::move(result_);
  }

private:
  void addLine(std::string_view line) {
    if (line.find_first_not_of(blanks) == std::string_view::npos) {
      startRun();
      result_ += line;
      return;
    }
    if (startsItem(line))
      cost_ = 0;
    const std::size_t columns = columnsOf(line);
    const std::size_t cost = line.size() + 1 + (columns > 0 ? delimiterRowCost : 0);
    // A run that costs nothing yet has nothing to end: its one long line is cut below.
    if (cost_ > 0 && cost_ + cost + columns_ > longestRun) {
      result_ += '\n';
      startRun();
    }
    cost_ += cost + columns_;
    if (columns <= mostColumns)
      columns_ = std::max(columns_, columns);
    // A single line may be longer than a run: it is cut into paragraphs.
    while (line.size() > longestRun) {
      const std::size_t end = endOfPiece(line);
      addMarkup(line.substr(0, end));
      result_ += "\n\n";
      line.remove_prefix(end);
    }
    addMarkup(line);
  }

  // At a blank if there is one, else between two characters.
  static std::size_t endOfPiece(std::string_view line) {
    const std::size_t blank = line.rfind(' ', longestRun);
    if (blank != std::string_view::npos && blank > 0)
      return blank;
    std::size_t end = longestRun;
    // A character of UTF-8 has at most three bytes behind its first.
    while (end > longestRun - 4 && (static_cast<unsigned char>(line[end]) & 0xC0U) == 0x80U)
      --end;
    return end;
  }

  void addMarkup(std::string_view line) {
    // One mark a line is enough: a marker that is text ends all markers behind it, and a row that holds anything else
    // is no delimiter row.
    std::optional<std::size_t> marked = excessiveMarker(line);
    if (!marked && columnsOf(line) > mostColumns)
      marked = line.rfind('|');
    if (marked)
      result_.append(line.substr(0, *marked)).append(mark).append(line.substr(*marked));
    else
      result_ += line;
  }

  void startRun() { cost_ = columns_ = 0; }

  std::string result_;
  std::size_t cost_ = 0;
  std::size_t columns_ = 0;
};

} // namespace

std::string bounded(std::string_view markdown) {
  return Limiter().limited(markdown);
}

std::string withoutMarks(std::string_view text) {
  std::string result;
  while (true) {
    const std::size_t at = text.find(mark);
    result += text.substr(0, at);
    if (at == std::string_view::npos)
      return result;
    text.remove_prefix(at + mark.size());
  }
}

} // namespace tabwright::markdown
