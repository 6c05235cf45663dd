#pragma once

#include "applescript/syntax/ScriptParser.h"

#include <string_view>
#include <utility>

/// Commands of dictionaries, and calls of the script's own handlers. As all parse functions (see ScriptParser.h), these
/// start at the construct's first token, end behind its last, never answer null, and throw the ScriptError of the first
/// thing that doesn't fit.
namespace tabwright::applescript {

/// A command whose words are the next `words` tokens, with its arguments. `term` must outlive the tree.
ExpressionPointer parseCommand(ScriptParser& p, const Term& term, std::size_t words);
/// `count of x`: `words` tokens and the `of` behind them, then what is counted.
ExpressionPointer parseCount(ScriptParser& p, std::size_t words);
/// The brackets of a call `name(…)`, at the cursor; the name has been taken and starts at `startOffset` (bytes).
ExpressionPointer parseCall(ScriptParser& p, std::string name, std::size_t startOffset);
/// The labels of a call `name of x from a given b:c`, at the cursor; the name has been taken.
ExpressionPointer parseLabelledCall(ScriptParser& p, std::string name, std::size_t startOffset);
/// At the cursor stand the name of a handler that the script defines with labels, anywhere, and the first of a call's.
[[nodiscard]] bool startsLabelledCall(const ScriptParser& p);
/// Labels may begin there, in a call or a definition: `of`, `in`, `given`, a preposition. `ahead` counts tokens from
/// the cursor.
[[nodiscard]] bool startsLabels(const ScriptParser& p, std::size_t ahead = 0);
/// The preposition of a labelled parameter at the cursor and its tokens: `from`, `out of`. No tokens when none stands
/// there.
[[nodiscard]] std::pair<std::string_view, std::size_t> findPreposition(const ScriptParser& p, std::size_t ahead = 0);
/// A parameter of a command around begins there, which ends an expression: `in` in `offset of "a" in "b"`. Only those
/// count that have not been given yet, and none from outside of brackets.
[[nodiscard]] bool isStoppedAt(const ScriptParser& p, std::size_t ahead);

} // namespace tabwright::applescript
