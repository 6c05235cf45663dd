// Two tables: keys by their symbols (xkbcommon-keysyms.h), and the characters of a US keyboard. Names and places are
// those of W3C's UI Events KeyboardEvent key and code Values, numbers those that Chromium gives.
#include "scripting/driver/PageKeys.h"

#include "platform/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

namespace tabwright::scripting {

namespace {

// Keys of both places may have the same key value; pages tell them apart by `location`.
enum class Place { main, keypad };

struct SymbolRow {
  std::uint32_t symbol;
  std::string_view key;
  std::string_view code;
  int keyCode;
  std::string_view text = {};
  Place place = Place::main;
};

constexpr SymbolRow symbolRows[]{
    {0xff08, "Backspace", "Backspace", 8},
    {0xff09, "Tab", "Tab", 9},
    {0xff0b, "Clear", "NumLock", 12, "", Place::keypad},
    {0xff0d, "Enter", "Enter", 13, "\r"},
    {0xff1b, "Escape", "Escape", 27},
    {0xff27, "HiraganaKatakana", "KanaMode", 21},
    {0xff30, "Alphanumeric", "Lang2", 240},
    {0xff50, "Home", "Home", 36},
    {0xff51, "ArrowLeft", "ArrowLeft", 37},
    {0xff52, "ArrowUp", "ArrowUp", 38},
    {0xff53, "ArrowRight", "ArrowRight", 39},
    {0xff54, "ArrowDown", "ArrowDown", 40},
    {0xff55, "PageUp", "PageUp", 33},
    {0xff56, "PageDown", "PageDown", 34},
    {0xff57, "End", "End", 35},
    {0xff6a, "Help", "Help", 47},
    {0xff8d, "Enter", "NumpadEnter", 13, "\r", Place::keypad},
    {0xffaa, "*", "NumpadMultiply", 106, "*", Place::keypad},
    {0xffab, "+", "NumpadAdd", 107, "+", Place::keypad},
    {0xffac, ",", "NumpadComma", 194, ",", Place::keypad},
    {0xffad, "-", "NumpadSubtract", 109, "-", Place::keypad},
    {0xffae, ".", "NumpadDecimal", 110, ".", Place::keypad},
    {0xffaf, "/", "NumpadDivide", 111, "/", Place::keypad},
    {0xffbd, "=", "NumpadEqual", 187, "=", Place::keypad},
    {0xffb0, "0", "Numpad0", 96, "0", Place::keypad},
    {0xffb1, "1", "Numpad1", 97, "1", Place::keypad},
    {0xffb2, "2", "Numpad2", 98, "2", Place::keypad},
    {0xffb3, "3", "Numpad3", 99, "3", Place::keypad},
    {0xffb4, "4", "Numpad4", 100, "4", Place::keypad},
    {0xffb5, "5", "Numpad5", 101, "5", Place::keypad},
    {0xffb6, "6", "Numpad6", 102, "6", Place::keypad},
    {0xffb7, "7", "Numpad7", 103, "7", Place::keypad},
    {0xffb8, "8", "Numpad8", 104, "8", Place::keypad},
    {0xffb9, "9", "Numpad9", 105, "9", Place::keypad},
    {0xffbe, "F1", "F1", 112},
    {0xffbf, "F2", "F2", 113},
    {0xffc0, "F3", "F3", 114},
    {0xffc1, "F4", "F4", 115},
    {0xffc2, "F5", "F5", 116},
    {0xffc3, "F6", "F6", 117},
    {0xffc4, "F7", "F7", 118},
    {0xffc5, "F8", "F8", 119},
    {0xffc6, "F9", "F9", 120},
    {0xffc7, "F10", "F10", 121},
    {0xffc8, "F11", "F11", 122},
    {0xffc9, "F12", "F12", 123},
    {0xffca, "F13", "F13", 124},
    {0xffcb, "F14", "F14", 125},
    {0xffcc, "F15", "F15", 126},
    {0xffcd, "F16", "F16", 127},
    {0xffce, "F17", "F17", 128},
    {0xffcf, "F18", "F18", 129},
    {0xffd0, "F19", "F19", 130},
    {0xffd1, "F20", "F20", 131},
    {0xffff, "Delete", "Delete", 46},
    {0xa5, "¥", "IntlYen", 220, "¥"},
    {0xa7, "§", "IntlBackslash", 0, "§"},
    {0x5f, "_", "IntlRo", 193, "_"},
    {0x20, " ", "Space", 32, " "},
};

/// A place of the keyboard with its two characters.
struct CharacterRow {
  char plain;
  char shifted;
  std::string_view code;
  int keyCode;
};

constexpr CharacterRow characterRows[]{
    {'`', '~', "Backquote", 192},   {'-', '_', "Minus", 189},        {'=', '+', "Equal", 187},
    {'[', '{', "BracketLeft", 219}, {']', '}', "BracketRight", 221}, {'\\', '|', "Backslash", 220},
    {';', ':', "Semicolon", 186},   {'\'', '"', "Quote", 222},       {',', '<', "Comma", 188},
    {'.', '>', "Period", 190},      {'/', '?', "Slash", 191},        {' ', ' ', "Space", 32},
    {'1', '!', "Digit1", 49},       {'2', '@', "Digit2", 50},        {'3', '#', "Digit3", 51},
    {'4', '$', "Digit4", 52},       {'5', '%', "Digit5", 53},        {'6', '^', "Digit6", 54},
    {'7', '&', "Digit7", 55},       {'8', '*', "Digit8", 56},        {'9', '(', "Digit9", 57},
    {'0', ')', "Digit0", 48},       {'a', 'A', "KeyA", 65},          {'b', 'B', "KeyB", 66},
    {'c', 'C', "KeyC", 67},         {'d', 'D', "KeyD", 68},          {'e', 'E', "KeyE", 69},
    {'f', 'F', "KeyF", 70},         {'g', 'G', "KeyG", 71},          {'h', 'H', "KeyH", 72},
    {'i', 'I', "KeyI", 73},         {'j', 'J', "KeyJ", 74},          {'k', 'K', "KeyK", 75},
    {'l', 'L', "KeyL", 76},         {'m', 'M', "KeyM", 77},          {'n', 'N', "KeyN", 78},
    {'o', 'O', "KeyO", 79},         {'p', 'P', "KeyP", 80},          {'q', 'Q', "KeyQ", 81},
    {'r', 'R', "KeyR", 82},         {'s', 'S', "KeyS", 83},          {'t', 'T', "KeyT", 84},
    {'u', 'U', "KeyU", 85},         {'v', 'V', "KeyV", 86},          {'w', 'W', "KeyW", 87},
    {'x', 'X', "KeyX", 88},         {'y', 'Y', "KeyY", 89},          {'z', 'Z', "KeyZ", 90},
};

std::optional<PageKey> keyOfCharacter(char character) {
  // Found as either of the two characters on a key; the blank is the same on both, and needs no shift.
  const auto row = std::ranges::find_if(
      characterRows, [&](const CharacterRow& each) { return each.plain == character || each.shifted == character; });
  if (row == std::ranges::end(characterRows))
    return std::nullopt;
  return PageKey{.key = std::string(1, character),
                 .code = std::string(row->code),
                 .keyCode = row->keyCode,
                 .text = std::string(1, character),
                 .isShifted = row->plain != character};
}

PageKey keyOfRow(const SymbolRow& row) {
  return {.key = std::string(row.key),
          .code = std::string(row.code),
          .keyCode = row.keyCode,
          .text = std::string(row.text),
          .isOnKeypad = row.place == Place::keypad};
}

constexpr std::uint32_t enter = 0xff0d;
constexpr std::uint32_t tab = 0xff09;

} // namespace

std::optional<PageKey> pageKeyOf(const platform::Key& key) {
  const auto row = std::ranges::find(symbolRows, key.symbol, &SymbolRow::symbol);
  return row != std::ranges::end(symbolRows) ? std::optional(keyOfRow(*row)) : std::nullopt;
}

std::optional<std::vector<PageKey>> pageKeysOf(std::string_view text) {
  if (platform::malformedByte(text))
    return std::nullopt;
  std::vector<PageKey> keys;
  std::string inserted;
  const auto closeInserted = [&] {
    if (!inserted.empty())
      keys.push_back({.key = {}, .code = {}, .text = std::exchange(inserted, {})});
  };
  for (const char character : text) {
    std::optional<PageKey> key = keyOfCharacter(character);
    if (character == '\n' || character == '\r' || character == '\t')
      key = pageKeyOf({.symbol = character == '\t' ? tab : enter});
    const auto byte = static_cast<unsigned char>(character);
    // Other control characters are no text, and no key of a US keyboard gives them alone.
    if (!key && (byte < 0x20 || byte == 0x7f))
      return std::nullopt;
    if (!key) {
      // Bytes of characters beyond ASCII gather here, so that whole characters are inserted.
      inserted += character;
      continue;
    }
    closeInserted();
    keys.push_back(std::move(*key));
  }
  closeInserted();
  return keys;
}

} // namespace tabwright::scripting
