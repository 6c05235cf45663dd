#pragma once

#include "applescript/syntax/Tree.h"

#include <string>

namespace tabwright::applescript::test {

/// The structure of a tree as text, without ranges: a statement a line, indented by blocks; expressions as nested
/// brackets, their words with their codes. Of statements it shows those whose parsing depends on dictionaries or leaves
/// no trace in a result; the others' kinds alone.
[[nodiscard]] std::string dump(const SyntaxTree& tree);

} // namespace tabwright::applescript::test
