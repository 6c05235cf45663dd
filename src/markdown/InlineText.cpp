// The text is one string with spans of styles beside it, so that words may change their style within. ICU finds where a
// line may end; of its answers only those at blanks and at wide characters count, for it would also part options and
// addresses at their hyphens and slashes.
#include "markdown/InlineText.h"

#include "platform/TerminalCells.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>

namespace tabwright::markdown {
namespace {

using platform::cellsOf;

constexpr std::string_view escape = "\x1B";

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

// The ends of all pieces that an ICU iterator finds in the text.
std::vector<std::size_t> boundaries(icu::BreakIterator& iterator, std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  UText* opened = utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
  iterator.setText(opened, status);
  std::vector<std::size_t> ends;
  iterator.first();
  for (std::int32_t end = iterator.next(); end != icu::BreakIterator::DONE; end = iterator.next())
    ends.push_back(static_cast<std::size_t>(end));
  utext_close(opened);
  return ends;
}

// ICU's iterators are not for several threads at once, and dear to make.
std::vector<std::size_t> lineBreaks(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  thread_local const std::unique_ptr<icu::BreakIterator> iterator(
      icu::BreakIterator::createLineInstance(icu::Locale::getRoot(), status));
  return iterator ? boundaries(*iterator, text) : std::vector<std::size_t>{text.size()};
}

std::vector<std::size_t> characterEnds(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  thread_local const std::unique_ptr<icu::BreakIterator> iterator(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  return iterator ? boundaries(*iterator, text) : std::vector<std::size_t>{text.size()};
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool isWideBefore(std::string_view text, std::size_t at) {
  std::size_t begin = at - 1;
  while (begin > 0 && isContinuation(text[begin]))
    --begin;
  return cellsOf(text.substr(begin, at - begin)) == 2;
}

bool isWideAfter(std::string_view text, std::size_t at) {
  std::size_t end = at + 1;
  while (end < text.size() && isContinuation(text[end]))
    ++end;
  return cellsOf(text.substr(at, end - at)) == 2;
}

std::string graphics(const Theme::TerminalLook& look) {
  std::string codes;
  const auto add = [&codes](bool isOn, std::string_view code) {
    if (isOn)
      codes.append(codes.empty() ? "" : ";").append(code);
  };
  add(look.isBold, "1");
  add(look.isDim, "2");
  add(look.isItalic, "3");
  add(look.isUnderlined, "4");
  add(look.isStruckThrough, "9");
  // The palette's order leaves black out, which is 30.
  static constexpr std::string_view colours[]{"", "31", "32", "33", "34", "35", "36"};
  add(look.colour != Theme::TerminalColour::unchanged, colours[static_cast<std::size_t>(look.colour)]);
  return codes;
}

// https://gist.github.com/egmontkob/eb114294efbcd5adb1944c9f3cb5feda
std::string hyperlink(std::string_view address) {
  return std::string(escape).append("]8;;").append(address).append(escape).append("\\");
}

} // namespace

TerminalStyle TerminalStyle::with(const Theme::TerminalLook& added) const {
  TerminalStyle style = *this;
  style.look.isBold |= added.isBold;
  style.look.isDim |= added.isDim;
  style.look.isItalic |= added.isItalic;
  style.look.isUnderlined |= added.isUnderlined;
  style.look.isStruckThrough |= added.isStruckThrough;
  if (added.colour != Theme::TerminalColour::unchanged)
    style.look.colour = added.colour;
  return style;
}

void InlineText::append(std::string_view text, const TerminalStyle& style) {
  std::string collapsed;
  for (const char character : platform::harmless(text)) {
    const bool isBlank = character == ' ' || character == '\t' || character == '\n';
    const char before = !collapsed.empty() ? collapsed.back() : text_.empty() ? '\n' : text_.back();
    if (!isBlank)
      collapsed += character;
    else if (before != ' ' && before != '\n')
      collapsed += ' ';
  }
  add(collapsed, style);
}

void InlineText::appendVerbatim(std::string_view text, const TerminalStyle& style) {
  std::string expanded;
  for (const char character : platform::harmless(text))
    if (character == '\t')
      expanded += "    ";
    else
      expanded += character;
  add(expanded, style);
}

void InlineText::endLine() {
  add("\n", {});
}

void InlineText::add(std::string_view text, const TerminalStyle& style) {
  text_ += text;
  if (!spans_.empty() && spans_.back().style == style)
    spans_.back().end = text_.size();
  else if (!text.empty())
    spans_.push_back({text_.size(), style});
}

std::vector<InlineText::Word> InlineText::words() const {
  std::vector<Word> words;
  std::size_t begin = 0;
  const auto endWord = [&](std::size_t end) {
    words.push_back({begin, end, text_[end - 1] == '\n'});
    begin = end;
  };
  if (isAscii(text_)) {
    for (std::size_t at = 1; at < text_.size(); ++at)
      if (text_[at - 1] == '\n' || (text_[at - 1] == ' ' && text_[at] != ' ' && text_[at] != '\n'))
        endWord(at);
  } else {
    for (const std::size_t at : lineBreaks(text_))
      if (at < text_.size() &&
          (text_[at - 1] == '\n' || text_[at - 1] == ' ' || isWideBefore(text_, at) || isWideAfter(text_, at)))
        endWord(at);
  }
  if (begin < text_.size())
    endWord(text_.size());
  return words;
}

InlineText::Range InlineText::trimmed(std::size_t begin, std::size_t end) const {
  while (end > begin && (text_[end - 1] == ' ' || text_[end - 1] == '\n'))
    --end;
  return {begin, end};
}

std::size_t InlineText::cells(Range line) const {
  return cellsOf(std::string_view(text_).substr(line.begin, line.end - line.begin));
}

std::vector<InlineText::Range> InlineText::lines(std::size_t width, LongWords longWords) const {
  std::vector<Range> lines;
  std::size_t begin = 0;
  std::size_t used = 0; // with the blanks after the last word
  for (const Word& word : words()) {
    const Range visible = trimmed(word.begin, word.end);
    const std::size_t needed = cells(visible);
    const Range before = trimmed(begin, word.begin);
    if (used + needed > width && before.end > before.begin) {
      lines.push_back(before);
      begin = word.begin;
      used = 0;
    }
    if (used + needed > width && longWords == LongWords::split) {
      std::size_t pieceBegin = visible.begin;
      for (const std::size_t characterEnd :
           characterEnds(std::string_view(text_).substr(visible.begin, visible.end - visible.begin))) {
        const std::size_t end = visible.begin + characterEnd;
        const std::size_t more = cells({pieceBegin, end});
        if (used + more > width && pieceBegin > begin) {
          lines.push_back({begin, pieceBegin});
          begin = pieceBegin;
          used = 0;
        }
        used += more;
        pieceBegin = end;
      }
      used += cells({visible.end, word.end});
    } else {
      used += cells({word.begin, word.end});
    }
    if (word.endsLine) {
      lines.push_back(trimmed(begin, word.end));
      begin = word.end;
      used = 0;
    }
  }
  if (begin < text_.size())
    lines.push_back(trimmed(begin, text_.size()));
  return lines;
}

std::size_t InlineText::widestWord() const {
  std::size_t widest = 0;
  for (const Word& word : words())
    widest = std::max(widest, cells(trimmed(word.begin, word.end)));
  return widest;
}

std::size_t InlineText::widestLine() const {
  std::size_t widest = 0;
  for (std::size_t begin = 0; begin < text_.size();) {
    const std::size_t end = std::min(text_.find('\n', begin), text_.size());
    widest = std::max(widest, cells(trimmed(begin, end)));
    begin = end + 1;
  }
  return widest;
}

std::string InlineText::rendered(Range line, TerminalColours colours) const {
  if (colours == TerminalColours::off)
    return text_.substr(line.begin, line.end - line.begin);
  std::string result;
  auto span = std::ranges::upper_bound(spans_, line.begin, {}, &Span::end);
  for (std::size_t begin = line.begin; begin < line.end; ++span) {
    const std::size_t end = std::min(span->end, line.end);
    const std::string codes = graphics(span->style.look);
    if (!span->style.address.empty())
      result += hyperlink(span->style.address);
    if (!codes.empty())
      result.append(escape).append("[").append(codes).append("m");
    result.append(text_, begin, end - begin);
    if (!codes.empty())
      result.append(escape).append("[0m");
    if (!span->style.address.empty())
      result += hyperlink("");
    begin = end;
  }
  return result;
}

} // namespace tabwright::markdown
