#include "actions/ActionList.h"

namespace tabwright::actions {

std::span<const ActionMaker> actionList() {
  static constexpr ActionMaker makers[]{
#define TABWRIGHT_ACTION(name) makeAction<name>,
#include "actions/Actions.def"
#undef TABWRIGHT_ACTION
  };
  return makers;
}

} // namespace tabwright::actions
