// White space is settled as text comes in: `tail_` knows what the line ends with so far. A blank or break that has to
// go later may stand before direction marks, so its place is kept and becomes a NUL, which is never written. Directions
// are found when the paragraph is whole; a run ends where format or direction change.
#include "browserdata/richtext/Paragraph.h"

#include "browserdata/richtext/RtfText.h"
#include "html/WhiteSpace.h"

#include <algorithm>

namespace tabwright::browserdata {
namespace {

void writeRun(std::string& out, std::u16string_view text, CharacterFormat format, bool isRightToLeft) {
  // Plain text needs no group, and most text is plain.
  if (format.styles == CharacterFormat::plain && !isRightToLeft)
    return appendRtf(out, text);
  out += '{';
  appendControlWords(out, format.styles, isRightToLeft);
  out += ' ';
  appendRtf(out, text);
  out += '}';
}

} // namespace

// Neighbours of one format are one segment, and so become one run.
void Paragraph::closeSegment(CharacterFormat format, bool isWritten) {
  const std::size_t start = segments_.empty() ? 0 : segments_.back().end;
  if (text_.size() == start)
    return;
  if (!segments_.empty() && segments_.back().isWritten == isWritten && segments_.back().format == format)
    segments_.back().end = text_.size();
  else
    segments_.push_back({text_.size(), format, isWritten});
}

void Paragraph::addBlank() {
  if (tail_ != Tail::text)
    return;
  tail_ = Tail::blank;
  tailAt_ = text_.size();
  text_ += u' ';
}

void Paragraph::addText(std::string_view text, CharacterFormat format, WhiteSpace whiteSpace) {
  while (!text.empty()) {
    const bool isBlank = html::isSpace(text.front());
    const auto length = static_cast<std::size_t>(
        std::ranges::find_if(text, [=](char c) { return html::isSpace(c) != isBlank; }) - text.begin());
    const std::string_view part = text.substr(0, length);
    text.remove_prefix(length);
    if (!isBlank) {
      appendUtf16(text_, part);
      tail_ = Tail::text;
      isShown_ = true;
    } else if (whiteSpace == WhiteSpace::collapsed) {
      addBlank();
    } else {
      for (const char c : part) {
        if (c == '\n') {
          addLineBreak(format);
        } else if (c != '\r') {
          text_ += c == '\f' ? u' ' : static_cast<char16_t>(c);
          tail_ = Tail::text;
          isShown_ = true;
        }
      }
    }
  }
  closeSegment(format, true);
}

void Paragraph::addLineBreak(CharacterFormat format) {
  // A blank before a line break isn't shown.
  if (tail_ == Tail::blank)
    dropTail();
  tail_ = Tail::lineBreak;
  tailAt_ = text_.size();
  text_ += u'\n';
  isShown_ = true;
  closeSegment(format, true);
}

void Paragraph::addDirectionMark(char16_t mark) {
  text_ += mark;
  // In a segment of its own, which is read for directions and not written.
  closeSegment({}, false);
}

void Paragraph::addDirectionOverride(char16_t mark, CharacterFormat format) {
  text_ += mark;
  closeSegment(format, true);
}

void Paragraph::dropTail() {
  if (tail_ == Tail::blank || tail_ == Tail::lineBreak)
    text_[tailAt_] = u'\0';
}

void Paragraph::write(std::string& out, LinkTable& links, const std::optional<ListMarker>& marker) {
  dropTail();
  const auto directions = TextDirections::of(text_, format.direction);
  appendParagraphStart(out, format, marker, directions.isRightToLeft);
  writeRuns(out, links, directions);
  clear();
}

void Paragraph::clear() {
  text_.clear();
  segments_.clear();
  tail_ = Tail::lineStart;
  isShown_ = false;
}

// Segments and directions cut the text at places of their own; a run ends at whichever comes first.
void Paragraph::writeRuns(std::string& out, LinkTable& links, const TextDirections& directions) const {
  std::uint32_t link = 0;
  bool isInField = false;
  const auto enterLink = [&](std::uint32_t next) {
    // A field spans all runs of a link in the paragraph, however their formats change.
    if (next == link)
      return;
    if (isInField)
      LinkTable::closeField(out);
    link = next;
    isInField = links.openField(out, next);
  };

  std::size_t at = 0;
  auto direction = directions.runs.begin();
  for (const Segment& segment : segments_) {
    if (segment.isWritten)
      enterLink(segment.format.link);
    while (at < segment.end) {
      const std::size_t end = std::min(segment.end, direction->end);
      if (segment.isWritten)
        writeRun(out, std::u16string_view(text_).substr(at, end - at), segment.format, direction->isRightToLeft);
      at = end;
      if (at == direction->end)
        ++direction;
    }
  }
  enterLink(0);
}

} // namespace tabwright::browserdata
