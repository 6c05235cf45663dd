#pragma once

#include "platform/KeyCodes.h"

#include <cstdint>

namespace tabwright::automation {

/// The modifiers of a key event, a bit each, by the Mac's numbers.
enum KeyboardModifier : std::uint32_t {
  shiftModifier = 0x20000,
  controlModifier = 0x40000,
  optionModifier = 0x80000,
  commandModifier = 0x100000,
  functionModifier = 0x800000,
};

/// The modifiers of an action's parameters.
struct KeyboardModifiers {
  /// Control on a PC's keyboard, as `platform::keysOf` has it.
  bool command = false;
  bool control = false;
  /// Has a bit and no key.
  bool function = false;
  /// Alt on a PC's keyboard.
  bool option = false;
  bool shift = false;

  /// The bits of those that are set.
  [[nodiscard]] constexpr std::uint32_t flags() const {
    return (command ? commandModifier : 0u) | (control ? controlModifier : 0u) | (function ? functionModifier : 0u) |
           (option ? optionModifier : 0u) | (shift ? shiftModifier : 0u);
  }
};

/// The modifiers to press for these bits; see `platform::keysOf`.
/// The function modifier presses nothing.
[[nodiscard]] constexpr platform::KeyModifiers pressedModifiers(std::uint32_t flags) {
  return platform::keysOf({.command = (flags & commandModifier) != 0,
                           .control = (flags & controlModifier) != 0,
                           .option = (flags & optionModifier) != 0,
                           .shift = (flags & shiftModifier) != 0});
}

} // namespace tabwright::automation
