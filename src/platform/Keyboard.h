#pragma once

#include "platform/CallLimits.h"

#include <cstdint>
#include <string>

namespace tabwright::platform {

/// Modifier keys, by their names on a PC's keyboard. The keyboard chooses between the left and the right key of a kind.
struct KeyModifiers {
  bool shift = false;
  bool control = false;
  bool alt = false;
  bool super = false; ///< with the window symbol on it; window managers take most of its combinations

  friend bool operator==(const KeyModifiers&, const KeyModifiers&) = default;
};

/// One key. It is found by its symbol in the layout that is in use; where that has none, as for F13 or the keys of a
/// Japanese keyboard, by its place on the keyboard.
struct Key {
  std::uint32_t symbol = 0;   ///< a key symbol of the X Keyboard Extension (xkbcommon-keysyms.h): 0xff1b is Escape
  std::uint16_t position = 0; ///< an event code of Linux (input-event-codes.h): 183 is F13. 0: only by its symbol
};

/// The keyboard, played from outside: the keys go to the window that has the keyboard, as the user's own do.
///
///     keyboard.press({.symbol = 0xff1b}, {}, limits);          // Escape
///     keyboard.type("Gr\u00fc\u00dfe, \u4e16\u754c", {}, limits); // whatever the layout
///
/// Symbols and characters are those that the user would get: the layout and its group that are in effect count. While
/// keys are played, modifiers that the user holds count as let go, and remain so until they are pressed again;
/// CapsLock counts as off, and is on again afterwards.
///
/// Nothing stays pressed: each press goes out together with its release, so that even a process that is killed leaves
/// no key down. Modifiers of `hold` are the exception; they are let go by `release`, and when this object ends.
///
/// Calls return when the display has the keys; the application may take them in later, a browser some 1,000 a second.
/// They may come from several threads and take turns. All throw DesktopFailure: `noWindowSystem`, `wayland`,
/// `noKeyPresses`, `stopped` (when the deadline has passed too).
class Keyboard {
public:
  virtual ~Keyboard() = default;

  /// Presses and releases a key while modifiers are held. Throws `noSuchKey`.
  virtual void press(const Key& key, const KeyModifiers& modifiers, const CallLimits& limits) = 0;

  /// Types a text, character by character, while modifiers are held. Line feed and carriage return are the return key.
  /// Characters that no key of the layout gives are put on spare keys for a while, which takes 50 ms for each 16 or so
  /// different ones; pages then see a key without a name, but the right text. Throws `untypable` before anything is
  /// typed, for control characters and what is not UTF-8; `stopped` when a part may have been typed.
  virtual void type(const std::string& text, const KeyModifiers& modifiers, const CallLimits& limits) = 0;

  /// Presses modifiers and leaves them pressed: what is played afterwards is played with them.
  virtual void hold(const KeyModifiers& modifiers) = 0;
  /// Releases modifiers, whoever has pressed them. One that isn't pressed is no error.
  virtual void release(const KeyModifiers& modifiers) = 0;
};

} // namespace tabwright::platform
