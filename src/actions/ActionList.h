#pragma once

#include "actions/ActionFrame.h"

#include <memory>
#include <span>

namespace tabwright::actions {

/// Makes an action for one run.
using ActionMaker = std::unique_ptr<ActionFrame> (*)(const ActionServices& services);

/// All actions, in the order in which they are offered: the rows of `Actions.def`.
[[nodiscard]] std::span<const ActionMaker> actionList();

// Each action's file defines its own.
#define TABWRIGHT_ACTION(name) std::unique_ptr<ActionFrame> make##name(const ActionServices& services);
#include "actions/Actions.def"
#undef TABWRIGHT_ACTION

} // namespace tabwright::actions
