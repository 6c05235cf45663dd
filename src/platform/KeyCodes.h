#pragma once

#include "platform/Keyboard.h"

#include <cstdint>
#include <optional>

namespace tabwright::platform {

/// The key of a PC's keyboard at the place of a Mac's virtual key code (HIToolbox, Events.h), or, for a key that is
/// known by what it does, the key that does the same. Nothing for codes of modifier keys, of no key, and of keys that a
/// PC's keyboard lacks.
///
///     keyOfCode(53)    // Escape, by its symbol
///     keyOfCode(0)     // A's place, whatever the layout has there
[[nodiscard]] std::optional<Key> keyOfCode(std::int64_t macKeyCode);

/// The modifiers of a Mac's keyboard. Its fn key has no counterpart, since it never reaches a program here.
struct MacModifiers {
  bool command = false;
  bool control = false;
  bool option = false;
  bool shift = false;
};

/// The modifiers that do the same on a PC's keyboard: command is Control, as in all shortcuts, and so is control;
/// option is Alt. Super is never pressed: window managers take most of its combinations.
[[nodiscard]] constexpr KeyModifiers keysOf(const MacModifiers& modifiers) {
  return {.shift = modifiers.shift, .control = modifiers.command || modifiers.control, .alt = modifiers.option};
}

} // namespace tabwright::platform
