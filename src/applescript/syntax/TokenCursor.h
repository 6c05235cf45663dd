#pragma once

#include "applescript/lexer/Token.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace tabwright::applescript {

/// A place among the tokens of a script, and looks at those around it. The last token, the script's end, stands for all
/// behind it, so that looking and going ahead always find one. Going back costs nothing: `moveTo(position)`.
///
/// Counts are tokens, offsets bytes of the source. References stay good as long as the token list.
class TokenCursor {
public:
  /// `tokens` must not be empty and must outlive the cursor.
  explicit TokenCursor(const std::vector<Token>& tokens) : tokens_(tokens) {}

  /// The token at the cursor, or so many ahead of it.
  [[nodiscard]] const Token& token(std::size_t ahead = 0) const {
    return tokens_[std::min(position_ + ahead, tokens_.size() - 1)];
  }
  /// From there to the script's end: never empty.
  [[nodiscard]] std::span<const Token> rest(std::size_t ahead = 0) const {
    return std::span(tokens_).subspan(std::min(position_ + ahead, tokens_.size() - 1));
  }
  /// The token last taken; not at the very beginning.
  [[nodiscard]] const Token& previous() const { return tokens_[position_ - 1]; }
  /// Those taken since a position, which must not lie ahead of the cursor.
  [[nodiscard]] std::span<const Token> since(std::size_t position) const {
    return std::span(tokens_).subspan(position, position_ - position);
  }
  [[nodiscard]] std::span<const Token> all() const { return tokens_; }

  /// A count of tokens from the script's beginning.
  [[nodiscard]] std::size_t position() const { return position_; }
  /// To a position that `position()` gave.
  void moveTo(std::size_t position) { position_ = position; }
  void advance(std::size_t count = 1) { position_ = std::min(position_ + count, tokens_.size() - 1); }
  /// The token at the cursor is that keyword or symbol.
  template <class Sign>
  [[nodiscard]] bool at(Sign sign) const {
    return token().is(sign);
  }
  /// Takes the token if it is that keyword or symbol.
  template <class Sign>
  bool accept(Sign sign) {
    if (!at(sign))
      return false;
    advance();
    return true;
  }
  /// To the end of the line, which isn't taken.
  void skipLine() {
    while (!token().endsLine())
      advance();
  }

  /// A word or quoted name with a colon behind it: a label, or the next part of a message.
  [[nodiscard]] bool isLabel(std::size_t ahead = 0) const {
    const Token& first = token(ahead);
    return (first.kind == Token::Kind::word || first.kind == Token::Kind::quotedName) &&
           token(ahead + 1).is(Symbol::colon);
  }
  /// The place in the source of the token at the cursor.
  [[nodiscard]] std::size_t offset() const { return token().range.offset; }
  /// The range from an offset to the end of the token last taken; empty when none was taken since.
  [[nodiscard]] SourceRange rangeFrom(std::size_t startOffset) const {
    const std::size_t end = position_ == 0 ? startOffset : previous().range.end();
    return {startOffset, end > startOffset ? end - startOffset : 0};
  }

private:
  const std::vector<Token>& tokens_;
  std::size_t position_ = 0;
};

} // namespace tabwright::applescript
