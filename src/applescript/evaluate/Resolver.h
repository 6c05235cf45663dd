#pragma once

#include "applescript/evaluate/ScriptLayout.h"

namespace tabwright::applescript {

/// The pass between parsing and running: finds out for each variable of a tree where it lives, so that a run looks up
/// no names, and fills in the tree's fields marked "Resolver".
///
/// A handler's variables are its own, unless it declares them `global`, or they are properties of its script or of a
/// script around that one. Statements outside of handlers make up the run handler, whose variables are globals of the
/// script. A variable that some `a reference to` in its handler names lives in a cell of its own.
///
/// The layouts point into the tree, and the tree's scripts to their layouts: they must live together. There are no
/// errors, since every name finds a place.
[[nodiscard]] ScriptLayouts resolve(SyntaxTree& tree);

} // namespace tabwright::applescript
