// The texts of all pieces stand in one text, one behind the other; a piece is a place in it. So trimming moves a border
// instead of copying, and a page of a million pieces needs no million texts. Pieces that are taken away leave their
// text behind until the end, within the limit.
#include "browserdata/markdown/MarkdownPieces.h"

#include "browserdata/HTMLToMarkdown.h"
#include "platform/Whitespace.h"

namespace tabwright::browserdata {

void MarkdownPieces::require(std::size_t room) const {
  // The text never shrinks, so what was written and taken away again counts: the bound is one of work, too.
  if (room > limit_ - text_.size())
    throw platform::failure(HTMLToMarkdownError::unprocessableHTML);
}

void MarkdownPieces::add(std::string_view text) {
  if (text.empty() && pieces_.size() == begin_)
    return;
  require(text.size());
  pieces_.push_back({text_.size(), text.size()});
  text_ += text;
}

void MarkdownPieces::quote(std::size_t begin) {
  for (std::size_t index = begin; index < pieces_.size(); ++index) {
    Piece& piece = pieces_[index];
    require(piece.length + 2);
    const std::size_t offset = text_.size();
    text_ += "> ";
    // A piece can't grow where it stands, so it is written anew at the end.
    text_.append(text_, piece.offset, piece.length);
    piece = {offset, piece.length + 2};
  }
}

void MarkdownPieces::trim(std::size_t begin) {
  const auto isBlank = [&](const Piece& piece) { return platform::isBlank(textOf(piece)); };
  while (pieces_.size() > begin && isBlank(pieces_.back()))
    pieces_.pop_back();
  std::size_t first = begin;
  while (first < pieces_.size() && isBlank(pieces_[first]))
    ++first;
  pieces_.erase(pieces_.begin() + static_cast<std::ptrdiff_t>(begin),
                pieces_.begin() + static_cast<std::ptrdiff_t>(first));
  if (pieces_.size() == begin)
    return;
  // Only the two outer pieces can lose white space; trimmed, they are smaller places in the same text.
  const auto trimmed = [&](const Piece& piece) { return platform::trimmingWhitespaceAndNewlines(textOf(piece)); };
  const auto offsetOf = [&](std::string_view text) { return static_cast<std::size_t>(text.data() - text_.data()); };
  Piece& front = pieces_[begin];
  const std::size_t frontBegin = offsetOf(trimmed(front));
  front = {frontBegin, front.offset + front.length - frontBegin};
  Piece& back = pieces_.back();
  const std::string_view backText = trimmed(back);
  back.length = offsetOf(backText) + backText.size() - back.offset;
}

std::string MarkdownPieces::joined(std::size_t begin) const {
  std::string text;
  for (std::size_t index = begin; index < pieces_.size(); ++index)
    text += textOf(pieces_[index]);
  return text;
}

std::string MarkdownPieces::take(std::size_t begin) {
  std::string text = joined(begin);
  pieces_.resize(begin);
  return text;
}

} // namespace tabwright::browserdata
