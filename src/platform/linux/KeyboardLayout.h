#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

struct xkb_keymap;

namespace tabwright::platform {

/// The way to a symbol on a keyboard. A key is pressed while exactly these modifiers are held, the group is in effect
/// and NumLock is in its state.
struct KeyPlace {
  enum class NumLock { either, on, off };

  std::uint8_t keycode = 0;          ///< of X11, which is 8 more than that of the kernel
  std::optional<std::uint8_t> group; ///< of the layout, from 0; nothing: the key is the same in all groups
  std::uint8_t modifiers = 0;        ///< to be held: bits of X11's real modifiers, such as 1 for Shift
  NumLock numLock = NumLock::either; ///< the state in which the key gives the symbol

  friend bool operator==(const KeyPlace&, const KeyPlace&) = default;
};

/// A layout read from the other end: from symbols and characters to keys. Holds a copy of all that it needs of the
/// keymap; immutable. It knows what keys give, and nothing of what is pressed. Symbols that need CapsLock count as not
/// there.
///
///     const auto place = layout.findCharacter(U'ß', 0);    // on a German keyboard: keycode 20, no modifiers
class KeyboardLayout {
public:
  /// The keymap may go afterwards.
  explicit KeyboardLayout(xkb_keymap* keymap);

  /// The key for a symbol, best in the group that is in effect, else in the first other one that has it, with as few
  /// modifiers as can be. Nothing when the layout doesn't have it. `symbol` is one of xkbcommon-keysyms.h, `group`
  /// counts from 0.
  [[nodiscard]] std::optional<KeyPlace> findSymbol(std::uint32_t symbol, std::uint8_t group) const;
  /// The same for a character. Keys of the keypad are not what types a text. Backspace, tab, return, escape and delete
  /// are the keys of these names.
  [[nodiscard]] std::optional<KeyPlace> findCharacter(char32_t character, std::uint8_t group) const;

  /// The modifiers that a key sets while it is pressed; 0 for all but modifier keys.
  [[nodiscard]] std::uint8_t modifiersOf(std::uint8_t keycode) const;
  /// The key that sets this one modifier and no other; nothing when there is none. Of several the one with the lowest
  /// keycode, which is the left one on a usual keyboard.
  [[nodiscard]] std::optional<std::uint8_t> modifierKey(std::uint8_t modifier) const;
  /// The modifier that the NumLock key locks; 0 without such a key.
  [[nodiscard]] std::uint8_t numLock() const noexcept { return numLock_; }
  /// True for the keycodes that the keyboard may use, whether or not the key gives something.
  [[nodiscard]] bool hasKey(unsigned keycode) const noexcept { return keycode >= lowest_ && keycode <= highest_; }
  /// The keys that give no symbol at all, the highest keycode first. They can be given symbols without taking any from
  /// the user.
  [[nodiscard]] const std::vector<std::uint8_t>& spareKeys() const noexcept { return spare_; }

private:
  /// Finds out which key sets which modifier.
  void readModifiers(xkb_keymap* keymap);
  /// Enters all that a key gives, in all groups and levels.
  void readKey(xkb_keymap* keymap, std::uint8_t keycode);
  /// The way to a level of a key; nothing when only CapsLock leads there.
  std::optional<KeyPlace> placeOf(xkb_keymap* keymap, std::uint8_t keycode, std::uint32_t group,
                                  std::uint32_t level) const;

  /// By symbol or by character: all places that give it.
  using Places = std::unordered_map<std::uint32_t, std::vector<KeyPlace>>;
  /// The place of the symbol or character that takes the least: the group in effect, then few modifiers.
  static std::optional<KeyPlace> best(const Places& places, std::uint32_t wanted, std::uint8_t group);

  Places bySymbol_, byCharacter_;
  std::unordered_map<std::uint8_t, std::uint8_t> modifierKeys_;
  std::vector<std::uint8_t> spare_;
  std::uint8_t numLock_ = 0;
  unsigned lowest_ = 0, highest_ = 0;
};

/// The symbol that stands for a character in a text: the character's own, and that of the key for backspace, tab, line
/// feed, carriage return, escape and delete. Nothing for other control characters and what is no character. Line feed
/// is the return key too.
[[nodiscard]] std::optional<std::uint32_t> symbolOfCharacter(char32_t character);

/// A text that is to be typed, character by character. Throws DesktopFailure `untypable` for the first character that
/// has no symbol, and for what is not UTF-8. One element for each code point.
[[nodiscard]] std::u32string typableCharacters(std::string_view text);

} // namespace tabwright::platform
