#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// To switch something on, off, or the other way round. No action takes it as yet.
enum class EnableDisableToggleSelection { enable, disable, toggle };

inline constexpr auto enableDisableToggleSelection = intents::enumTable<EnableDisableToggleSelection>({
    {EnableDisableToggleSelection::enable, "enable"},
    {EnableDisableToggleSelection::disable, "disable"},
    {EnableDisableToggleSelection::toggle, "toggle"},
});

constexpr intents::EnumDeclaration enumDeclaration(EnableDisableToggleSelection) {
  return {"EnableDisableToggleSelection", intents::tables::enums, enableDisableToggleSelection};
}

} // namespace tabwright::actions
