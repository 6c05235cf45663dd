// The rows stand in the order of the codes. Keys that type stand by their place (input-event-codes.h), since what they
// give is the layout's matter on both keyboards; others by their symbol (xkbcommon-keysyms.h), and by their place where
// many layouts give them no symbol.
#include "platform/KeyCodes.h"

#include <algorithm>

namespace tabwright::platform {

namespace {

struct KeyCodeRow {
  std::int64_t code;
  Key key;
};

constexpr KeyCodeRow rows[]{
    {0, {.position = 30}},                         // A
    {1, {.position = 31}},                         // S
    {2, {.position = 32}},                         // D
    {3, {.position = 33}},                         // F
    {4, {.position = 35}},                         // H
    {5, {.position = 34}},                         // G
    {6, {.position = 44}},                         // Z
    {7, {.position = 45}},                         // X
    {8, {.position = 46}},                         // C
    {9, {.position = 47}},                         // V
    {10, {.symbol = 0xa7}},                        // Section Sign
    {11, {.position = 48}},                        // B
    {12, {.position = 16}},                        // Q
    {13, {.position = 17}},                        // W
    {14, {.position = 18}},                        // E
    {15, {.position = 19}},                        // R
    {16, {.position = 21}},                        // Y
    {17, {.position = 20}},                        // T
    {18, {.position = 2}},                         // 1
    {19, {.position = 3}},                         // 2
    {20, {.position = 4}},                         // 3
    {21, {.position = 5}},                         // 4
    {22, {.position = 7}},                         // 6
    {23, {.position = 6}},                         // 5
    {24, {.position = 13}},                        // =
    {25, {.position = 10}},                        // 9
    {26, {.position = 8}},                         // 7
    {27, {.position = 12}},                        // -
    {28, {.position = 9}},                         // 8
    {29, {.position = 11}},                        // 0
    {30, {.position = 27}},                        // ]
    {31, {.position = 24}},                        // O
    {32, {.position = 22}},                        // U
    {33, {.position = 26}},                        // [
    {34, {.position = 23}},                        // I
    {35, {.position = 25}},                        // P
    {36, {.symbol = 0xff0d}},                      // Return
    {37, {.position = 38}},                        // L
    {38, {.position = 36}},                        // J
    {39, {.position = 40}},                        // '
    {40, {.position = 37}},                        // K
    {41, {.position = 39}},                        // ;
    {42, {.position = 43}},                        // backslash
    {43, {.position = 51}},                        // ,
    {44, {.position = 53}},                        // /
    {45, {.position = 49}},                        // N
    {46, {.position = 50}},                        // M
    {47, {.position = 52}},                        // .
    {48, {.symbol = 0xff09}},                      // Tab
    {49, {.symbol = 0x20}},                        // Space
    {50, {.position = 41}},                        // `
    {51, {.symbol = 0xff08}},                      // Backspace
    {53, {.symbol = 0xff1b}},                      // Escape
    {64, {.symbol = 0xffce, .position = 187}},     // F17
    {65, {.symbol = 0xffae, .position = 83}},      // Keypad .
    {67, {.symbol = 0xffaa}},                      // Keypad *
    {69, {.symbol = 0xffab}},                      // Keypad +
    {71, {.symbol = 0xff0b}},                      // Keypad Clear
    {72, {.symbol = 0x1008ff13, .position = 115}}, // volume up
    {73, {.symbol = 0x1008ff11, .position = 114}}, // volume down
    {74, {.symbol = 0x1008ff12, .position = 113}}, // mute
    {75, {.symbol = 0xffaf}},                      // Keypad /
    {76, {.symbol = 0xff8d}},                      // Enter
    {78, {.symbol = 0xffad}},                      // Keypad -
    {79, {.symbol = 0xffcf, .position = 188}},     // F18
    {80, {.symbol = 0xffd0, .position = 189}},     // F19
    {81, {.symbol = 0xffbd, .position = 117}},     // Keypad =
    {82, {.symbol = 0xffb0}},                      // Keypad 0
    {83, {.symbol = 0xffb1}},                      // Keypad 1
    {84, {.symbol = 0xffb2}},                      // Keypad 2
    {85, {.symbol = 0xffb3}},                      // Keypad 3
    {86, {.symbol = 0xffb4}},                      // Keypad 4
    {87, {.symbol = 0xffb5}},                      // Keypad 5
    {88, {.symbol = 0xffb6}},                      // Keypad 6
    {89, {.symbol = 0xffb7}},                      // Keypad 7
    {90, {.symbol = 0xffd1, .position = 190}},     // F20
    {91, {.symbol = 0xffb8}},                      // Keypad 8
    {92, {.symbol = 0xffb9}},                      // Keypad 9
    {93, {.symbol = 0xa5, .position = 124}},       // JIS Yen
    {94, {.symbol = 0x5f, .position = 89}},        // JIS Underscore
    {95, {.symbol = 0xffac, .position = 121}},     // JIS Keypad ,
    {96, {.symbol = 0xffc2}},                      // F5
    {97, {.symbol = 0xffc3}},                      // F6
    {98, {.symbol = 0xffc4}},                      // F7
    {99, {.symbol = 0xffc0}},                      // F3
    {100, {.symbol = 0xffc5}},                     // F8
    {101, {.symbol = 0xffc6}},                     // F9
    {102, {.symbol = 0xff30}},                     // JIS Eisu
    {103, {.symbol = 0xffc8}},                     // F11
    {104, {.symbol = 0xff27, .position = 93}},     // JIS Kana
    {105, {.symbol = 0xffca, .position = 183}},    // F13
    {106, {.symbol = 0xffcd, .position = 186}},    // F16
    {107, {.symbol = 0xffcb, .position = 184}},    // F14
    {109, {.symbol = 0xffc7}},                     // F10
    {111, {.symbol = 0xffc9}},                     // F12
    {113, {.symbol = 0xffcc, .position = 185}},    // F15
    {114, {.symbol = 0xff6a, .position = 138}},    // Help
    {115, {.symbol = 0xff50}},                     // Home
    {116, {.symbol = 0xff55}},                     // Page Up
    {117, {.symbol = 0xffff}},                     // Delete
    {118, {.symbol = 0xffc1}},                     // F4
    {119, {.symbol = 0xff57}},                     // End
    {120, {.symbol = 0xffbf}},                     // F2
    {121, {.symbol = 0xff56}},                     // Page Down
    {122, {.symbol = 0xffbe}},                     // F1
    {123, {.symbol = 0xff51}},                     // Cursor ←
    {124, {.symbol = 0xff53}},                     // Cursor →
    {125, {.symbol = 0xff54}},                     // Cursor ↓
    {126, {.symbol = 0xff52}},                     // Cursor ↑
};
// The search below halves the table.
static_assert(std::ranges::is_sorted(rows, {}, &KeyCodeRow::code));

} // namespace

std::optional<Key> keyOfCode(std::int64_t macKeyCode) {
  const auto row = std::ranges::lower_bound(rows, macKeyCode, {}, &KeyCodeRow::code);
  return row != std::ranges::end(rows) && row->code == macKeyCode ? std::optional(row->key) : std::nullopt;
}

} // namespace tabwright::platform
