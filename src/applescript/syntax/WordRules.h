#pragma once

#include "applescript/lexer/Keyword.h"
#include "applescript/syntax/Tree.h"

namespace tabwright::applescript {

class ScriptParser;

/// The constructs that a word of the grammar begins. Null for none; the functions answer null where what follows
/// doesn't fit.
struct WordRule {
  /// A word behind a command, as the beginning of its argument.
  enum class Argument {
    asTerm,   ///< only as a dictionary's word, or a name of the script's own
    always,   ///< begins one
    beforeOf, ///< begins one with `of` behind it
  };
  Keyword word = Keyword::none;
  Argument argument = Argument::asTerm;
  ExpressionPointer (*expression)(ScriptParser&) = nullptr;
  StatementPointer (*statement)(ScriptParser&) = nullptr;
};
[[nodiscard]] const WordRule& ruleFor(Keyword word);

} // namespace tabwright::applescript
