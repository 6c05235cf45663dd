#pragma once

#include "applescript/ScriptError.h"
#include "applescript/lexer/Token.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// A script cut into tokens.
struct TokenList {
  /// The last one is of Kind::scriptEnd, so that looking ahead from any other finds a token.
  std::vector<Token> tokens;
  /// Stage::syntax. The offending token is in the list all the same, so that the parser can go on.
  std::vector<ScriptError> errors;
  /// `application "X"` and `application id "X"`, whose dictionary the words in front of it on the line may need: the
  /// index of the line's first token, and of the text with the name.
  struct Mention {
    std::size_t firstOfLine = 0;
    std::size_t name = 0;
    bool isID = false;
  };
  std::vector<Mention> mentions;
  /// In source order.
  std::vector<SourceRange> comments;

  /// Texts of tokens that don't stand in the source: those with escapes.
  std::deque<std::string> storage;
};

/// Cuts a script into tokens, in one pass and in linear time. Comments and continued line ends (`¬`) leave no token.
///
/// `source` must outlive the answer.
[[nodiscard]] TokenList tokenize(std::string_view source);

} // namespace tabwright::applescript
