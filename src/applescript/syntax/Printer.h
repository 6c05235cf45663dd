#pragma once

#include "applescript/syntax/Tree.h"

#include <string>

namespace tabwright::applescript {

/// Writes a tree as source text in the usual layout (one tab per level). Parsing that text gives an equal tree: the
/// round trip that tests rely on. Comments are not kept.
[[nodiscard]] std::string print(const SyntaxTree& tree);

} // namespace tabwright::applescript
