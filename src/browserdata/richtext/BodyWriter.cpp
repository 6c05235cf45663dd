// Tables within cells go by the rules of Rich Text Format for nested ones: their definition stands at each row's end,
// in a group that readers without nested tables skip; such readers see paragraphs. The mark behind a paragraph (\par or
// \cell) belongs to what follows, so it is written by that: a paragraph before the end of a cell has none of its own.
#include "browserdata/richtext/BodyWriter.h"

#include <fmt/core.h>

#include <iterator>
#include <utility>

namespace tabwright::browserdata {

Paragraph& BodyWriter::paragraph(const ParagraphFormat& format) {
  paragraph_.format = format;
  return paragraph_;
}

void BodyWriter::startParagraph(ParagraphFormat& format) {
  if (isOpen_)
    out_ += "\\par\n";
  // The first paragraph of a document or a cell needs none above it.
  format.hasRoomAbove = needsRoom_ && (isOpen_ || rowBefore_ > 0);
  needsRoom_ = false;
  isOpen_ = true;
  rowBefore_ = 0;
}

void BodyWriter::endParagraph() {
  if (!paragraph_.isShown())
    return paragraph_.clear();
  startParagraph(paragraph_.format);
  paragraph_.write(out_, links, pendingItem_ ? std::optional(pendingItem_->marker) : std::nullopt);
  pendingItem_.reset();
}

void BodyWriter::startItem(ListMarker marker, const ParagraphFormat& format) {
  endParagraph();
  writePendingMarker();
  pendingItem_ = {std::move(marker), format};
}

void BodyWriter::endItem() {
  endParagraph();
  writePendingMarker();
}

// An item without text still shows its mark.
void BodyWriter::writePendingMarker() {
  if (!pendingItem_)
    return;
  startParagraph(pendingItem_->format);
  appendParagraphStart(out_, pendingItem_->format, pendingItem_->marker,
                       pendingItem_->format.direction == Direction::rightToLeft);
  pendingItem_.reset();
}

void BodyWriter::writeEmptyParagraph(int tableDepth) {
  ParagraphFormat format;
  format.tableDepth = static_cast<std::uint8_t>(tableDepth);
  appendParagraphStart(out_, format, std::nullopt, false);
  isOpen_ = true;
}

void BodyWriter::addRule(ParagraphFormat format) {
  endItem();
  startParagraph(format);
  appendParagraphStart(out_, format, std::nullopt, false);
  out_ += "\\brdrb\\brdrs\\brdrw10\\brsp20\\fs8 ";
  addRoom();
}

void BodyWriter::startTable(int depth) {
  endItem();
  if (rowBefore_ != depth)
    return;
  writeEmptyParagraph(depth - 1); // readers would take the two for one
  needsRoom_ = false;
}

void BodyWriter::startRow(std::string_view definition, int depth) {
  // Rows have no room above; the paragraph before them can still be given some below.
  if (isOpen_ && needsRoom_)
    fmt::format_to(std::back_inserter(out_), "\\sa{}", ParagraphFormat::room);
  if (isOpen_)
    out_ += "\\par\n";
  isOpen_ = false;
  needsRoom_ = false;
  rowBefore_ = 0;
  if (depth == 1)
    out_ += definition;
  out_ += '\n';
}

void BodyWriter::endCell(int depth) {
  endItem();
  if (!isOpen_)
    writeEmptyParagraph(depth);
  // \nonesttables holds what readers without nested tables show in its place.
  out_ += depth == 1 ? "\\cell\n" : "\\nestcell{\\nonesttables\\par}\n";
  isOpen_ = false;
  needsRoom_ = false;
  rowBefore_ = 0;
}

void BodyWriter::endRow(std::string_view definition, int depth) {
  if (depth == 1)
    out_ += "\\row\n";
  else
    fmt::format_to(std::back_inserter(out_),
                   "\\pard\\plain\\intbl\\itap{}{{\\*\\nesttableprops{}\\nestrow}}{{\\nonesttables\\par}}\n", depth,
                   definition);
  rowBefore_ = depth;
}

std::string BodyWriter::finish() {
  endItem();
  if (!isOpen_)
    writeEmptyParagraph(0);
  return std::move(out_);
}

} // namespace tabwright::browserdata
