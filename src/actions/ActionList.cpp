#include "actions/ActionList.h"

namespace tabwright::actions {

std::span<const ActionEntry> actionList() {
  static constexpr ActionEntry entries[]{
#define TABWRIGHT_ACTION(name) {#name, make##name},
#include "actions/Actions.def"
#undef TABWRIGHT_ACTION
  };
  return entries;
}

} // namespace tabwright::actions
