#pragma once

#include "applescript/syntax/ScriptParser.h"

/// Expressions, and those without operators and containers that they are made of. From the widest to the narrowest:
/// `parseExpression` (with operators), `parseChain` (references, ParseReferences.h), `parsePrimary`, `parseKey`.
namespace tabwright::applescript {

/// An expression with all its operators, up to what can't belong to it.
ExpressionPointer parseExpression(ScriptParser& p);
/// Behind a sign; `-1` is a literal, so that it can stand where only literals do.
ExpressionPointer parseSigned(ScriptParser& p);
/// The cursor is at something that belongs to a construct around the expression: a command's parameter, the label of a
/// message, the end of the line.
[[nodiscard]] bool isStopped(const ScriptParser& p);
/// An argument of a command may begin at the cursor. Answers by the next few tokens and takes none.
[[nodiscard]] bool canStartExpression(const ScriptParser& p);

// ParsePrimaries.cpp, and ParseRaw.cpp for codes in chevrons
/// Without operators and without `of` and `'s`: `x`, `f(1)`, `tab 3`, `{1, 2}`, `(a + b)`, a command with its
/// arguments.
ExpressionPointer parsePrimary(ScriptParser& p);
/// `the x` is `x`; the word may stand several times.
ExpressionPointer parseThe(ScriptParser& p);
/// A dictionary's words: a command, a class with what picks from it, a constant, or a property. `matches` are those at
/// the cursor and not empty.
ExpressionPointer parseTerm(ScriptParser& p, const TermMatches& matches);
/// A name of the script's own: a variable, or a handler that is called.
ExpressionPointer parseName(ScriptParser& p);
/// A number without sign: an integer as far as 64 bits reach, else a real. Throws −2702 for one that no real can hold;
/// one too small is 0.
ExpressionPointer parseNumber(ScriptParser& p);
/// `application "NAME"`, `application id "ID"`, or the class `application` alone.
ExpressionPointer parseApplication(ScriptParser& p);
/// `a reference to x`, of whose words the first `words` are passed over.
ExpressionPointer parseReferenceTo(ScriptParser& p, std::size_t words);
/// A property of nothing yet; its words are the next `words` tokens.
ExpressionPointer parseProperty(ScriptParser& p, Label property, std::size_t words);
/// Takes so many tokens for the literal; `words` where the value can't show them.
ExpressionPointer makeLiteral(ScriptParser& p, Value value, std::size_t tokens, std::string words = {});
/// A code in chevrons, with what belongs to it: a command's arguments, a class's key.
ExpressionPointer parseRaw(ScriptParser& p);
/// `{…}`: a record when a label stands ahead, else a list. `parse` reads each part.
ExpressionPointer parseBraces(ScriptParser& p, ExpressionPointer (*parse)(ScriptParser&));
/// Without the colon behind it.
Label parseLabel(ScriptParser& p);
/// A label of one word or of a dictionary's several, and its colon, stand at the cursor.
[[nodiscard]] bool isLabelAhead(const ScriptParser& p);
/// The word at the cursor is a variable although dictionaries have it: bound outside of any `tell`, or the plural of a
/// class of values. `matches` are those at the cursor and not empty.
[[nodiscard]] bool isVariableDespite(const ScriptParser& p, const TermMatches& matches);

} // namespace tabwright::applescript
