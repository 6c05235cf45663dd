#pragma once

#include "applescript/syntax/ScriptParser.h"

/// Statements, the blocks that they make up, and what stands at a script's outermost level. A mistake inside of a block
/// is reported where it is (ScriptParser::parseLine); what these throw is a mistake of their own first line.
namespace tabwright::applescript {

/// A whole script's.
Block parseScriptBody(ScriptParser& p);
/// One statement, with its block if it opens one; the line's end is left to the caller.
StatementPointer parseStatement(ScriptParser& p);
/// The statements up to a block's `end`, `else` or `on`.
Block parseStatements(ScriptParser& p);
/// Parses the body of a block of that kind and its `end`.
Block parseBody(ScriptParser& p, Keyword kind);
/// Takes a block's `end` and the word behind it. A wrong or missing one is reported, not thrown; the `end` of another
/// open block is left for that.
void finishBlock(ScriptParser& p, Keyword kind);
/// A place that `set` and `copy` may change, or a list or record of such. Binds the names in it that stand alone.
ExpressionPointer parseTarget(ScriptParser& p);
/// A name that becomes a variable here: from here on the scope knows it as bound.
std::unique_ptr<Variable> parseBinding(ScriptParser& p);

/// Those that a word of the grammar begins (WordRules.cpp), at that word. `parseWith` and `parseUsingTerms` answer
/// null, and take nothing, where the words behind say that it is no such statement.
using StatementParser = StatementPointer(ScriptParser&);
StatementParser parseSet, parseCopy, parseReturn, parseExit, parseContinue, parseDeclaration;
StatementParser parseIf, parseRepeat, parseTell, parseTry, parseError, parseScript;
StatementParser parseConsidering, parseWith, parseUsingTerms;

} // namespace tabwright::applescript
