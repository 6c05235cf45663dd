#pragma once

#include "applescript/syntax/Tree.h"

#include <string>

namespace tabwright::applescript {

/// Writes a tree as source text in the usual layout (one tab per level). Parsing that text gives an equal tree: the
/// round trip that tests rely on. Comments are not kept.
[[nodiscard]] std::string print(const SyntaxTree& tree);

/// The structure of a tree as text, without ranges: what two trees are compared by in tests.
[[nodiscard]] std::string dump(const SyntaxTree& tree);

} // namespace tabwright::applescript
