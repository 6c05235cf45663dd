// A sentence is put together of what could stand at a place and what does; the first is all that a parse function has
// to know. Words of the grammar are named by their spelling, all other tokens by their kind.
#include "applescript/lexer/SyntaxErrors.h"

#include <fmt/core.h>

#include <utility>

namespace tabwright::applescript {

ScriptError syntaxError(int number, std::string sentence, SourceRange range) {
  ScriptError error(ScriptError::Stage::syntax, number, std::move(sentence));
  error.at(range); // even an empty one at the very beginning
  return error;
}

ScriptError expectedError(std::string_view expected, std::string_view found, const Token& token) {
  const int number = token.kind == Token::Kind::unknown ? errorNumber::unknownToken : errorNumber::syntaxError;
  // The sign of a line's end is shown at the place where something is missing, not as the break itself.
  const SourceRange range = token.endsLine() ? SourceRange{token.range.offset, 0} : token.range;
  return syntaxError(number, fmt::format("Expected {} but found {}.", expected, found), range);
}

std::string describe(const Token& token) {
  switch (token.kind) {
  case Token::Kind::word:
    if (isReserved(token.keyword))
      return fmt::format("“{}”", spelling(token.keyword));
    return "identifier";
  case Token::Kind::quotedName:
    return "identifier";
  case Token::Kind::number:
  case Token::Kind::ordinal:
    return "number";
  case Token::Kind::text:
    return "“\"”";
  case Token::Kind::raw:
    return "“«”";
  case Token::Kind::possessive:
    return "“'s”";
  case Token::Kind::symbol:
    return fmt::format("“{}”", token.text);
  case Token::Kind::lineEnd:
    return "end of line";
  case Token::Kind::scriptEnd:
    return "end of script";
  case Token::Kind::unknown:
    return "unknown token";
  }
  return {};
}

std::string_view describe(const Terminology::Match& match) {
  switch (match.term->kind) {
  case Term::Kind::className:
    return match.isPlural ? "plural class name" : "class name";
  case Term::Kind::property:
    return "property";
  case Term::Kind::enumerator:
    return "application constant or consideration";
  case Term::Kind::command:
    return "command name";
  }
  return {};
}

} // namespace tabwright::applescript
