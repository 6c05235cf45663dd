#pragma once

#include "actions/ActionFrame.h"

#include <memory>
#include <span>

namespace tabwright::actions {

/// Makes an action for one run. The file of an action instantiates it, so that no other has to know the class:
///
///     template std::unique_ptr<ActionFrame> makeAction<ClickElement>(const ActionServices&);
template <class Action>
std::unique_ptr<ActionFrame> makeAction(const ActionServices& services) {
  return std::make_unique<Action>(services);
}

// NOLINTBEGIN(bugprone-macro-parentheses): the argument names a class
#define TABWRIGHT_ACTION(name)                                                                                         \
  extern template std::unique_ptr<ActionFrame> makeAction<class name>(const ActionServices&);
// NOLINTEND(bugprone-macro-parentheses)
#include "actions/Actions.def"
#undef TABWRIGHT_ACTION

using ActionMaker = std::unique_ptr<ActionFrame> (*)(const ActionServices& services);
/// The makers of all actions, in the order in which these are offered: the rows of `Actions.def`.
[[nodiscard]] std::span<const ActionMaker> actionList();

} // namespace tabwright::actions
