#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The modifier parameters of a keyboard action as they are shown, or not. Those that are set are pressed in any case;
/// while they are shown, `SimulateTyping` types its text in lower case.
enum class KeyboardModifiersStatus { enabled, disabled };

inline constexpr auto keyboardModifiersStatus = intents::enumTable<KeyboardModifiersStatus>({
    {KeyboardModifiersStatus::enabled, "enabled"},
    {KeyboardModifiersStatus::disabled, "disabled"},
});

constexpr intents::EnumDeclaration enumDeclaration(KeyboardModifiersStatus) {
  return {"KeyboardModifiersStatus", intents::tables::enums, keyboardModifiersStatus};
}

} // namespace tabwright::actions
