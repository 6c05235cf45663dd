#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// Tells a keyboard action to look at its modifier parameters, or not to.
enum class KeyboardModifiersStatus { enabled, disabled };

inline constexpr auto keyboardModifiersStatus = intents::enumTable<KeyboardModifiersStatus>({
    {KeyboardModifiersStatus::enabled, "enabled"},
    {KeyboardModifiersStatus::disabled, "disabled"},
});

constexpr intents::EnumDeclaration enumDeclaration(KeyboardModifiersStatus) {
  return {"KeyboardModifiersStatus", intents::tables::enums, keyboardModifiersStatus};
}

} // namespace tabwright::actions
