#pragma once

#include "applescript/syntax/ScriptParser.h"

/// Statements, the blocks that they make up, and what stands at a script's outermost level.
namespace tabwright::applescript {

/// A whole script's.
Block parseScriptBody(ScriptParser& p);
StatementPointer parseStatement(ScriptParser& p);
/// The statements up to a block's `end`, `else` or `on`.
Block parseStatements(ScriptParser& p);
/// Parses the body of a block of that kind and its `end`.
Block parseBody(ScriptParser& p, Keyword kind);
void finishBlock(ScriptParser& p, Keyword kind);
/// A place that `set` and `copy` may change.
ExpressionPointer parseTarget(ScriptParser& p);
/// A name that becomes a variable here.
std::unique_ptr<Variable> parseBinding(ScriptParser& p);

/// Those that a word of the grammar begins.
using StatementParser = StatementPointer(ScriptParser&);
StatementParser parseSet, parseCopy, parseReturn, parseExit, parseContinue, parseDeclaration;
StatementParser parseIf, parseRepeat, parseTell, parseTry, parseError, parseScript;
StatementParser parseConsidering, parseWith, parseUsingTerms;

} // namespace tabwright::applescript
