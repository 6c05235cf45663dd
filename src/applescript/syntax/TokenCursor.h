#pragma once

#include "applescript/lexer/Token.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace tabwright::applescript {

/// A place among the tokens of a script, and looks at those around it. The last token, the script's end, stands for all
/// behind it, so that looking and going ahead always find one.
class TokenCursor {
public:
  /// `tokens` must not be empty and must outlive the cursor.
  explicit TokenCursor(const std::vector<Token>& tokens) : tokens_(tokens) {}

  [[nodiscard]] const Token& token(std::size_t ahead = 0) const {
    return tokens_[std::min(position_ + ahead, tokens_.size() - 1)];
  }
  [[nodiscard]] std::span<const Token> rest(std::size_t ahead = 0) const {
    return std::span(tokens_).subspan(std::min(position_ + ahead, tokens_.size() - 1));
  }
  /// The token last taken; not at the very beginning.
  [[nodiscard]] const Token& previous() const { return tokens_[position_ - 1]; }
  /// Those taken since a position.
  [[nodiscard]] std::span<const Token> since(std::size_t position) const {
    return std::span(tokens_).subspan(position, position_ - position);
  }
  [[nodiscard]] std::span<const Token> all() const { return tokens_; }

  [[nodiscard]] std::size_t position() const { return position_; }
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
  /// The token's place in the source.
  [[nodiscard]] std::size_t offset() const { return token().range.offset; }
  /// The range from an offset to the end of the token last taken.
  [[nodiscard]] SourceRange rangeFrom(std::size_t startOffset) const {
    const std::size_t end = position_ == 0 ? startOffset : previous().range.end();
    return {startOffset, end > startOffset ? end - startOffset : 0};
  }

private:
  const std::vector<Token>& tokens_;
  std::size_t position_ = 0;
};

} // namespace tabwright::applescript
