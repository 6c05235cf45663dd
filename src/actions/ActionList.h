#pragma once

#include "actions/ActionFrame.h"

#include <memory>
#include <span>
#include <string_view>

namespace tabwright::actions {

/// One action of the catalogue: its short name, and how a value for one run is made.
struct ActionEntry {
  std::string_view name;
  std::unique_ptr<ActionFrame> (*make)(const ActionServices& services);
};

/// All actions, in the order in which they are offered: the rows of `Actions.def`.
[[nodiscard]] std::span<const ActionEntry> actionList();

// Each action's file defines its own.
#define TABWRIGHT_ACTION(name) std::unique_ptr<ActionFrame> make##name(const ActionServices& services);
#include "actions/Actions.def"
#undef TABWRIGHT_ACTION

} // namespace tabwright::actions
