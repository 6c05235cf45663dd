// The columns: name, the Mac's virtual key code, and the key on a PC: its symbol (xkbcommon-keysyms.h) and, for keys
// that many layouts give no symbol, its place (input-event-codes.h). A key whose place is taken by another one there
// has none.
#include "automation/NamedKey.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tabwright::automation {

namespace {

constexpr NamedKeyRow miscellaneous[]{
    {"Backspace", 51, {.symbol = 0xff08}},
    {"Delete", 117, {.symbol = 0xffff}},
    {"Enter", 76, {.symbol = 0xff8d}},
    {"Escape", 53, {.symbol = 0xff1b}},
    {"Help", 114, {.symbol = 0xff6a, .position = 138}},
    {"Return", 36, {.symbol = 0xff0d}},
    {"Section Sign", 10, {.symbol = 0xa7}},
    {"Space", 49, {.symbol = 0x20}},
    {"Tab", 48, {.symbol = 0xff09}},
};

constexpr NamedKeyRow navigation[]{
    {"Home", 115, {.symbol = 0xff50}},
    {"End", 119, {.symbol = 0xff57}},
    {"Page Up", 116, {.symbol = 0xff55}},
    {"Page Down", 121, {.symbol = 0xff56}},
};

constexpr NamedKeyRow cursor[]{
    {"Cursor ←", 123, {.symbol = 0xff51}, "Cursor Left"},
    {"Cursor →", 124, {.symbol = 0xff53}, "Cursor Right"},
    {"Cursor ↑", 125, {.symbol = 0xff52}, "Cursor Up"},
    {"Cursor ↓", 126, {.symbol = 0xff54}, "Cursor Down"},
};

constexpr NamedKeyRow functionKeys[]{
    {"F1", 122, {.symbol = 0xffbe}},
    {"F2", 120, {.symbol = 0xffbf}},
    {"F3", 99, {.symbol = 0xffc0}},
    {"F4", 118, {.symbol = 0xffc1}},
    {"F5", 96, {.symbol = 0xffc2}},
    {"F6", 97, {.symbol = 0xffc3}},
    {"F7", 98, {.symbol = 0xffc4}},
    {"F8", 100, {.symbol = 0xffc5}},
    {"F9", 101, {.symbol = 0xffc6}},
    {"F10", 109, {.symbol = 0xffc7}},
    {"F11", 103, {.symbol = 0xffc8}},
    {"F12", 111, {.symbol = 0xffc9}},
    {"F13", 105, {.symbol = 0xffca, .position = 183}},
    {"F14", 107, {.symbol = 0xffcb, .position = 184}},
    {"F15", 113, {.symbol = 0xffcc, .position = 185}},
    {"F16", 106, {.symbol = 0xffcd, .position = 186}},
    {"F17", 64, {.symbol = 0xffce, .position = 187}},
    {"F18", 79, {.symbol = 0xffcf, .position = 188}},
    {"F19", 80, {.symbol = 0xffd0, .position = 189}},
    {"F20", 90, {.symbol = 0xffd1, .position = 190}},
};

constexpr NamedKeyRow keypad[]{
    {"Keypad 0", 82, {.symbol = 0xffb0}},     {"Keypad 1", 83, {.symbol = 0xffb1}},
    {"Keypad 2", 84, {.symbol = 0xffb2}},     {"Keypad 3", 85, {.symbol = 0xffb3}},
    {"Keypad 4", 86, {.symbol = 0xffb4}},     {"Keypad 5", 87, {.symbol = 0xffb5}},
    {"Keypad 6", 88, {.symbol = 0xffb6}},     {"Keypad 7", 89, {.symbol = 0xffb7}},
    {"Keypad 8", 91, {.symbol = 0xffb8}},     {"Keypad 9", 92, {.symbol = 0xffb9}},
    {"Keypad /", 75, {.symbol = 0xffaf}},     {"Keypad =", 81, {.symbol = 0xffbd, .position = 117}},
    {"Keypad -", 78, {.symbol = 0xffad}},     {"Keypad *", 67, {.symbol = 0xffaa}},
    {"Keypad +", 69, {.symbol = 0xffab}},     {"Keypad .", 65, {.symbol = 0xffae, .position = 83}},
    {"Keypad Clear", 71, {.symbol = 0xff0b}}, {"JIS Keypad ,", 95, {.symbol = 0xffac, .position = 121}},
};

constexpr NamedKeyRow japanese[]{
    {"JIS Eisu", 102, {.symbol = 0xff30}},
    {"JIS Kana", 104, {.symbol = 0xff27, .position = 93}},
    {"JIS Underscore", 94, {.symbol = 0x5f, .position = 89}},
    {"JIS Yen", 93, {.symbol = 0xa5, .position = 124}},
};

constexpr std::array sections{
    NamedKeySection{"Miscellaneous", miscellaneous},
    NamedKeySection{"Navigation", navigation},
    NamedKeySection{"Cursor", cursor},
    NamedKeySection{"Function keys", functionKeys},
    NamedKeySection{"Numeric Keypad", keypad},
    NamedKeySection{"JIS", japanese},
};

consteval bool keyCodesDiffer() {
  std::array<bool, 128> isTaken{};
  for (const NamedKeySection& section : sections) {
    for (const NamedKeyRow& row : section.items) {
      bool& taken = isTaken.at(static_cast<std::size_t>(row.keycode));
      if (taken)
        return false;
      taken = true;
    }
  }
  return true;
}
static_assert(keyCodesDiffer());

} // namespace

std::span<const NamedKeySection> namedKeySections() {
  return sections;
}

} // namespace tabwright::automation
