#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

struct xkb_keymap;

namespace tabwright::platform {

/// The way to a symbol on a keyboard.
struct KeyPlace {
  enum class NumLock { either, on, off };

  std::uint8_t keycode = 0;          ///< of X11, which is 8 more than that of the kernel
  std::optional<std::uint8_t> group; ///< of the layout, from 0; nothing: the key is the same in all groups
  std::uint8_t modifiers = 0;        ///< to be held: bits of X11's real modifiers, such as 1 for Shift
  NumLock numLock = NumLock::either; ///< the state in which the key gives the symbol

  friend bool operator==(const KeyPlace&, const KeyPlace&) = default;
};

/// A layout read from the other end: from symbols and characters to keys. Holds a copy of all that it needs of the
/// keymap; immutable.
class KeyboardLayout {
public:
  explicit KeyboardLayout(xkb_keymap* keymap);

  /// The key for a symbol, best in the group that is in effect, else in the first other one that has it, with as few
  /// modifiers as can be. Nothing when the layout doesn't have it.
  [[nodiscard]] std::optional<KeyPlace> findSymbol(std::uint32_t symbol, std::uint8_t group) const;
  /// The same for a character. Keys of the keypad are not what types a text.
  [[nodiscard]] std::optional<KeyPlace> findCharacter(char32_t character, std::uint8_t group) const;

  /// The modifiers that a key sets while it is pressed; 0 for all but modifier keys.
  [[nodiscard]] std::uint8_t modifiersOf(std::uint8_t keycode) const;
  /// The key that sets this one modifier and no other; nothing when there is none.
  [[nodiscard]] std::optional<std::uint8_t> modifierKey(std::uint8_t modifier) const;
  /// The modifier that the NumLock key locks; 0 without such a key.
  [[nodiscard]] std::uint8_t numLock() const noexcept { return numLock_; }
  [[nodiscard]] bool hasKey(unsigned keycode) const noexcept { return keycode >= lowest_ && keycode <= highest_; }
  /// The keys that give no symbol at all, the highest keycode first.
  [[nodiscard]] const std::vector<std::uint8_t>& spareKeys() const noexcept { return spare_; }

private:
  void readModifiers(xkb_keymap* keymap);
  void readKey(xkb_keymap* keymap, std::uint8_t keycode);
  std::optional<KeyPlace> placeOf(xkb_keymap* keymap, std::uint8_t keycode, std::uint32_t group,
                                  std::uint32_t level) const;

  using Places = std::unordered_map<std::uint32_t, std::vector<KeyPlace>>;
  static std::optional<KeyPlace> best(const Places& places, std::uint32_t wanted, std::uint8_t group);

  Places bySymbol_, byCharacter_;
  std::unordered_map<std::uint8_t, std::uint8_t> modifierKeys_;
  std::vector<std::uint8_t> spare_;
  std::uint8_t numLock_ = 0;
  unsigned lowest_ = 0, highest_ = 0;
};

/// The symbol that stands for a character in a text: the character's own, and that of the key for backspace, tab, line
/// feed, carriage return, escape and delete. Nothing for other control characters and what is no character.
[[nodiscard]] std::optional<std::uint32_t> symbolOfCharacter(char32_t character);

/// A text that is to be typed, character by character. Throws DesktopFailure `untypable` for the first character that
/// has no symbol, and for what is not UTF-8.
[[nodiscard]] std::u32string typableCharacters(std::string_view text);

} // namespace tabwright::platform
