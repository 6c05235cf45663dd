#pragma once

#include "applescript/syntax/ScriptParser.h"

/// Expressions, and those without operators and containers that they are made of.
namespace tabwright::applescript {

ExpressionPointer parseExpression(ScriptParser& p);
/// Behind a sign; `-1` is a literal, so that it can stand where only literals do.
ExpressionPointer parseSigned(ScriptParser& p);
/// The cursor is at something that belongs to a construct around the expression.
[[nodiscard]] bool isStopped(const ScriptParser& p);
/// An argument of a command may begin at the cursor.
[[nodiscard]] bool canStartExpression(const ScriptParser& p);

// ParsePrimaries.cpp, and ParseRaw.cpp for codes in chevrons
ExpressionPointer parsePrimary(ScriptParser& p);
ExpressionPointer parseThe(ScriptParser& p);
/// A dictionary's words: a command, a class with what picks from it, a constant, or a property.
ExpressionPointer parseTerm(ScriptParser& p, const TermMatches& matches);
/// A name of the script's own: a variable, or a handler that is called.
ExpressionPointer parseName(ScriptParser& p);
ExpressionPointer parseNumber(ScriptParser& p);
ExpressionPointer parseApplication(ScriptParser& p);
ExpressionPointer parseReferenceTo(ScriptParser& p, std::size_t words);
ExpressionPointer parseProperty(ScriptParser& p, Label property, std::size_t words);
/// Takes so many tokens for the literal; `words` where the value can't show them.
ExpressionPointer makeLiteral(ScriptParser& p, Value value, std::size_t tokens, std::string words = {});
ExpressionPointer parseRaw(ScriptParser& p);
/// `{…}`: a record when a label stands ahead, else a list. `parse` reads each part.
ExpressionPointer parseBraces(ScriptParser& p, ExpressionPointer (*parse)(ScriptParser&));
/// Without the colon behind it.
Label parseLabel(ScriptParser& p);
[[nodiscard]] bool isLabelAhead(const ScriptParser& p);
/// A bare word is a variable although dictionaries have it.
[[nodiscard]] bool isVariableDespite(const ScriptParser& p, const TermMatches& matches);

} // namespace tabwright::applescript
