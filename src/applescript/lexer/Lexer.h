#pragma once

#include "applescript/ScriptError.h"
#include "applescript/lexer/Token.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// A script cut into tokens, which point into its source and into `storage`. It may be moved; the tokens of a copy
/// would point into the storage of the original.
struct TokenList {
  /// The last one is of Kind::scriptEnd, so that looking ahead from any other finds a token.
  std::vector<Token> tokens;
  /// Stage::syntax, each with its range. The offending token is in the list all the same, so that the parser can go on.
  std::vector<ScriptError> errors;
  /// `application "X"` and `application id "X"`, whose dictionary the words in front of it on the line may need: the
  /// index of the line's first token, and of the text with the name.
  ///
  /// Noted while reading, since `name of window 1 of application "X"` shows the dictionary behind the words that need
  /// it.
  struct Mention {
    std::size_t firstOfLine = 0;
    std::size_t name = 0;
    /// `application id "X"`: the text is a bundle identifier.
    bool isID = false;
  };
  /// In source order. A name with escapes (`"a\"b"`) is not among them.
  std::vector<Mention> mentions;
  /// With their signs (`--`, `#`, `(*` and `*)`), in source order. A bracket comment that is not closed goes to the end
  /// of the script.
  std::vector<SourceRange> comments;

  /// Texts of tokens that don't stand in the source: those with escapes.
  std::deque<std::string> storage;
};

/// Cuts a script into tokens, in one pass and in linear time. Comments and continued line ends (`¬`) leave no token;
/// line ends leave one each, also those of empty lines. LF, CR and CR LF end a line.
///
/// Any text gives a list: mistakes are in `errors`, nothing is thrown for them. Bytes that are no UTF-8 become tokens
/// of Kind::unknown, but stay as they are within texts and comments. `source` must outlive the answer.
[[nodiscard]] TokenList tokenize(std::string_view source);

} // namespace tabwright::applescript
