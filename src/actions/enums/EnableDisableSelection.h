#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// To switch something on or off. No action takes it as yet.
enum class EnableDisableSelection { enable, disable };

inline constexpr auto enableDisableSelection = intents::enumTable<EnableDisableSelection>({
    {EnableDisableSelection::enable, "enable"},
    {EnableDisableSelection::disable, "disable"},
});

constexpr intents::EnumDeclaration enumDeclaration(EnableDisableSelection) {
  return {"EnableDisableSelection", intents::tables::enums, enableDisableSelection};
}

} // namespace tabwright::actions
