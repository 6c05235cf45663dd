#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::browserdata {

/// The flat list of text pieces that a conversion to Markdown makes, in output order. Some rules look at the pieces of
/// an element one by one, so nothing is joined before the end.
///
/// An element's content is added in a scope of its own, and its pieces are addressed by the place where they begin.
class MarkdownPieces {
public:
  /// At most `limit` bytes are held. Adding more throws `HTMLToMarkdownError::unprocessableHTML`.
  explicit MarkdownPieces(std::size_t limit) : limit_(limit) {}

  /// Adds one piece, even an empty one, but for those at the begin of the scope.
  void add(std::string_view text);

  /// Adds what `content` adds, without the empty pieces at its two ends. Yields where it begins.
  template <class Content>
  std::size_t addTrimmed(Content content) {
    const std::size_t begin = pieces_.size();
    const std::size_t outerBegin = begin_;
    begin_ = begin;
    content();
    begin_ = outerBegin;
    while (pieces_.size() > begin && pieces_.back().length == 0)
      pieces_.pop_back();
    return begin;
  }

  /// Puts "> " before each piece from `begin` on.
  void quote(std::size_t begin);

  /// Removes the blank pieces at both ends of those from `begin` on, and the white space at both ends of what remains.
  void trim(std::size_t begin);

  /// Bytes that may still be added.
  [[nodiscard]] std::size_t room() const { return limit_ - text_.size(); }

  /// Takes the pieces from `begin` on away and joins them.
  [[nodiscard]] std::string take(std::size_t begin);

  /// The number of pieces; a place from which on more will be added.
  [[nodiscard]] std::size_t size() const { return pieces_.size(); }

  /// Joins the pieces from `begin` on and leaves them there. Those that a trim has removed may be missing in front.
  [[nodiscard]] std::string joined(std::size_t begin) const;

private:
  /// A place in `text_`, in bytes.
  struct Piece {
    std::size_t offset;
    std::size_t length;
  };
  /// Valid until text is added.
  [[nodiscard]] std::string_view textOf(const Piece& piece) const {
    return std::string_view(text_).substr(piece.offset, piece.length);
  }
  /// Throws where that much more would go beyond the limit, before any of it is added.
  void require(std::size_t room) const;

  std::string text_;
  std::vector<Piece> pieces_;
  std::size_t begin_ = 0; // of the scope whose empty first pieces are left out
  std::size_t limit_;
};

} // namespace tabwright::browserdata
