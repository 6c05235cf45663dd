// The columns: name, and the Mac's virtual key code. The keys of a PC's keyboard for them stand in
// platform/KeyCodes.cpp.
#include "automation/NamedKey.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tabwright::automation {

namespace {

constexpr NamedKeyRow miscellaneous[]{
    {"Backspace", 51}, {"Delete", 117},      {"Enter", 76}, {"Escape", 53}, {"Help", 114},
    {"Return", 36},    {"Section Sign", 10}, {"Space", 49}, {"Tab", 48},
};

constexpr NamedKeyRow navigation[]{
    {"Home", 115},
    {"End", 119},
    {"Page Up", 116},
    {"Page Down", 121},
};

constexpr NamedKeyRow cursor[]{
    {"Cursor ←", 123, "Cursor Left"},
    {"Cursor →", 124, "Cursor Right"},
    {"Cursor ↑", 125, "Cursor Up"},
    {"Cursor ↓", 126, "Cursor Down"},
};

constexpr NamedKeyRow functionKeys[]{
    {"F1", 122},  {"F2", 120},  {"F3", 99},   {"F4", 118},  {"F5", 96},   {"F6", 97},   {"F7", 98},
    {"F8", 100},  {"F9", 101},  {"F10", 109}, {"F11", 103}, {"F12", 111}, {"F13", 105}, {"F14", 107},
    {"F15", 113}, {"F16", 106}, {"F17", 64},  {"F18", 79},  {"F19", 80},  {"F20", 90},
};

constexpr NamedKeyRow keypad[]{
    {"Keypad 0", 82}, {"Keypad 1", 83}, {"Keypad 2", 84}, {"Keypad 3", 85}, {"Keypad 4", 86},     {"Keypad 5", 87},
    {"Keypad 6", 88}, {"Keypad 7", 89}, {"Keypad 8", 91}, {"Keypad 9", 92}, {"Keypad /", 75},     {"Keypad =", 81},
    {"Keypad -", 78}, {"Keypad *", 67}, {"Keypad +", 69}, {"Keypad .", 65}, {"Keypad Clear", 71}, {"JIS Keypad ,", 95},
};

constexpr NamedKeyRow japanese[]{
    {"JIS Eisu", 102},
    {"JIS Kana", 104},
    {"JIS Underscore", 94},
    {"JIS Yen", 93},
};

constexpr std::array sections{
    NamedKeySection{"Miscellaneous", miscellaneous},
    NamedKeySection{"Navigation", navigation},
    NamedKeySection{"Cursor", cursor},
    NamedKeySection{"Function keys", functionKeys},
    NamedKeySection{"Numeric Keypad", keypad},
    NamedKeySection{"JIS", japanese},
};

// A key is found by its code, too, so none may have that of another.
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
