#pragma once

#include "applescript/syntax/Tree.h"

#include <string>

namespace tabwright::applescript {

/// Writes a tree as source text in the usual layout: one tab per level, words as dictionaries have them. Comments,
/// single empty lines, and continued line ends between the parts of lists, commands and operators stay; a comment
/// inside of a line goes to its end. Parsing that text gives an equal tree, and printing that the same text.
///
/// Lines end in LF, the last one too. Never fails.
[[nodiscard]] std::string print(const SyntaxTree& tree);

} // namespace tabwright::applescript
