#pragma once

#include "platform/Keyboard.h"

#include <cstdint>
#include <optional>

namespace tabwright::platform {

/// The key of a PC's keyboard at the place of a Mac's virtual key code (HIToolbox, Events.h), or, for a key that is
/// known by what it does, the key that does the same. Nothing for codes of modifier keys, of no key, and of keys that a
/// PC's keyboard lacks.
[[nodiscard]] std::optional<Key> keyOfCode(std::int64_t macKeyCode);

} // namespace tabwright::platform
