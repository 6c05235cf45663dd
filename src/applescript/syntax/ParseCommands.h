#pragma once

#include "applescript/syntax/ScriptParser.h"

#include <string_view>
#include <utility>

/// Commands of dictionaries, and calls of the script's own handlers.
namespace tabwright::applescript {

ExpressionPointer parseCommand(ScriptParser& p, const Term& term, std::size_t words);
ExpressionPointer parseCount(ScriptParser& p, std::size_t words);
ExpressionPointer parseCall(ScriptParser& p, std::string name, std::size_t startOffset);
ExpressionPointer parseLabelledCall(ScriptParser& p, std::string name, std::size_t startOffset);
/// The name of a handler with labels, and the first of them.
[[nodiscard]] bool startsLabelledCall(const ScriptParser& p);
/// Labels may begin there, in a call or a definition: `of`, `given`, a preposition.
[[nodiscard]] bool startsLabels(const ScriptParser& p, std::size_t ahead = 0);
/// The preposition of a labelled parameter at the cursor and its tokens: `from`, `out of`.
[[nodiscard]] std::pair<std::string_view, std::size_t> findPreposition(const ScriptParser& p, std::size_t ahead = 0);
/// A parameter of a command around begins there.
[[nodiscard]] bool isStoppedAt(const ScriptParser& p, std::size_t ahead);

} // namespace tabwright::applescript
