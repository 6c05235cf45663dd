#pragma once

#include "applescript/lexer/Keyword.h"
#include "applescript/syntax/Tree.h"

namespace tabwright::applescript {

class ScriptParser;

/// The constructs that a word of the grammar begins. Null for none; the functions answer null where what follows
/// doesn't fit, and have taken no token then. A word may begin an expression and a statement both (`return`, `script`);
/// at a line's start the statement is tried first.
struct WordRule {
  /// A word behind a command, as the beginning of its argument.
  enum class Argument {
    asTerm,   ///< only as a dictionary's word, or a name of the script's own
    always,   ///< begins one
    beforeOf, ///< begins one with `of` behind it
  };
  Keyword word = Keyword::none;
  /// Read by canStartExpression, which has to tell from words alone.
  Argument argument = Argument::asTerm;
  ExpressionPointer (*expression)(ScriptParser&) = nullptr;
  StatementPointer (*statement)(ScriptParser&) = nullptr;
};
/// The rule of a word; an empty one for a word that begins nothing, and for Keyword::none. Static storage, constant
/// time.
[[nodiscard]] const WordRule& ruleFor(Keyword word);

} // namespace tabwright::applescript
