// Every level of every key is looked at once, and filed under the symbol and the character that it gives; a search then
// is a look into a map, and the cheapest of the ways found is taken. The library answers only in the other direction,
// from keys to symbols, so asking it for each character would go through the whole keyboard each time.
#include "platform/linux/KeyboardLayout.h"

#include "platform/DesktopFault.h"
#include "platform/Utf8.h"

#include <fmt/core.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace tabwright::platform {

namespace {

constexpr std::uint8_t lock = 1 << 1; // CapsLock, among X11's real modifiers

bool isOnKeypad(std::uint32_t symbol) {
  return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal;
}

/// All combinations of modifiers that lead to a level.
std::vector<std::uint8_t> waysTo(xkb_keymap* keymap, std::uint8_t keycode, std::uint32_t group, std::uint32_t level) {
  std::array<xkb_mod_mask_t, 16> masks{};
  const std::size_t count =
      xkb_keymap_key_get_mods_for_level(keymap, keycode, group, level, masks.data(), masks.size());
  std::vector<std::uint8_t> ways;
  for (std::size_t each = 0; each < std::min(count, masks.size()); ++each)
    ways.push_back(static_cast<std::uint8_t>(masks[each]));
  return ways;
}

} // namespace

KeyboardLayout::KeyboardLayout(xkb_keymap* keymap)
    : lowest_(xkb_keymap_min_keycode(keymap)), highest_(std::min(xkb_keymap_max_keycode(keymap), 255u)) {
  readModifiers(keymap);
  for (unsigned keycode = lowest_; keycode <= highest_; ++keycode)
    readKey(keymap, static_cast<std::uint8_t>(keycode));
  // Collected from the lowest keycode up.
  std::ranges::reverse(spare_);
}

/// Each key is pressed on a keyboard in memory, to see what it does.
void KeyboardLayout::readModifiers(xkb_keymap* keymap) {
  for (unsigned keycode = lowest_; keycode <= highest_; ++keycode) {
    const std::unique_ptr<xkb_state, decltype(&xkb_state_unref)> state(xkb_state_new(keymap), &xkb_state_unref);
    const bool isNumLock = xkb_state_key_get_one_sym(state.get(), keycode) == XKB_KEY_Num_Lock;
    xkb_state_update_key(state.get(), keycode, XKB_KEY_DOWN);
    const auto set = [&](xkb_state_component component) {
      return static_cast<std::uint8_t>(xkb_state_serialize_mods(state.get(), component));
    };
    if (const std::uint8_t locked = set(XKB_STATE_MODS_LOCKED); isNumLock && locked != 0)
      numLock_ = locked;
    else if (const std::uint8_t pressed = set(XKB_STATE_MODS_DEPRESSED); locked == 0 && pressed != 0)
      modifierKeys_[static_cast<std::uint8_t>(keycode)] = pressed;
  }
}

void KeyboardLayout::readKey(xkb_keymap* keymap, std::uint8_t keycode) {
  bool isSpare = true;
  const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap, keycode);
  for (xkb_layout_index_t group = 0; group < groups; ++group) {
    const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(keymap, keycode, group);
    for (xkb_level_index_t level = 0; level < levels; ++level) {
      const xkb_keysym_t* symbols = nullptr;
      // A key that gives several symbols at once types none of them by itself.
      if (xkb_keymap_key_get_syms_by_level(keymap, keycode, group, level, &symbols) != 1 ||
          symbols[0] == XKB_KEY_NoSymbol)
        continue;
      isSpare = false;
      const std::optional<KeyPlace> place = placeOf(keymap, keycode, group, level);
      if (!place)
        continue;
      bySymbol_[symbols[0]].push_back(*place);
      // Keys of the keypad depend on NumLock besides.
      if (const std::uint32_t character = xkb_keysym_to_utf32(symbols[0]); character != 0 && !isOnKeypad(symbols[0]))
        byCharacter_[character].push_back(*place);
    }
  }
  if (isSpare)
    spare_.push_back(keycode);
}

std::optional<KeyPlace> KeyboardLayout::placeOf(xkb_keymap* keymap, std::uint8_t keycode, std::uint32_t group,
                                                std::uint32_t level) const {
  KeyPlace place;
  place.keycode = keycode;
  if (xkb_keymap_num_layouts_for_key(keymap, keycode) > 1)
    place.group = static_cast<std::uint8_t>(group);
  std::vector<std::uint8_t> ways = waysTo(keymap, keycode, group, level);
  // The first level of a key without modifiers needs none.
  if (ways.empty() && level == 0)
    ways.push_back(0);
  std::erase_if(ways, [](std::uint8_t way) { return (way & lock) != 0; });
  if (ways.empty())
    return std::nullopt;
  // A lock is turned rather than a key held: Shift on the keypad is seen by programs as more than it does here.
  const auto cost = [&](std::uint8_t way) { return std::popcount(static_cast<std::uint8_t>(way & ~numLock_)); };
  const std::uint8_t way = *std::ranges::min_element(ways, {}, cost);
  place.modifiers = static_cast<std::uint8_t>(way & ~numLock_);
  // NumLock matters where any level of the key asks for it.
  bool isTurned = false;
  for (xkb_level_index_t each = 0; each < xkb_keymap_num_levels_for_key(keymap, keycode, group); ++each) {
    const std::vector<std::uint8_t> others = waysTo(keymap, keycode, group, each);
    isTurned |= std::ranges::any_of(others, [&](std::uint8_t other) { return (other & numLock_) != 0; });
  }
  if (isTurned)
    place.numLock = (way & numLock_) != 0 ? KeyPlace::NumLock::on : KeyPlace::NumLock::off;
  return place;
}

std::optional<KeyPlace> KeyboardLayout::best(const Places& places, std::uint32_t wanted, std::uint8_t group) {
  const auto found = places.find(wanted);
  if (found == places.end())
    return std::nullopt;
  const auto cost = [&](const KeyPlace& place) {
    // Modifiers come second: they are held for one key, and a group is switched for the whole keyboard.
    const int distance = place.group.value_or(group) == group ? 0 : 1 + *place.group;
    return std::pair(distance, std::popcount(place.modifiers));
  };
  return *std::ranges::min_element(found->second, {}, cost);
}

std::optional<KeyPlace> KeyboardLayout::findSymbol(std::uint32_t symbol, std::uint8_t group) const {
  return best(bySymbol_, symbol, group);
}

std::optional<KeyPlace> KeyboardLayout::findCharacter(char32_t character, std::uint8_t group) const {
  const std::optional<std::uint32_t> symbol = symbolOfCharacter(character);
  if (symbol && (*symbol & 0xFF00) == 0xFF00) // function keys, which also stand for characters
    return findSymbol(*symbol, group);
  return best(byCharacter_, character, group);
}

std::uint8_t KeyboardLayout::modifiersOf(std::uint8_t keycode) const {
  const auto found = modifierKeys_.find(keycode);
  return found == modifierKeys_.end() ? std::uint8_t{0} : found->second;
}

std::optional<std::uint8_t> KeyboardLayout::modifierKey(std::uint8_t modifier) const {
  std::optional<std::uint8_t> lowest;
  for (const auto& [keycode, set] : modifierKeys_) {
    if (set == modifier && (!lowest || keycode < *lowest))
      lowest = keycode;
  }
  return lowest;
}

std::optional<std::uint32_t> symbolOfCharacter(char32_t character) {
  if (character == '\n')
    return XKB_KEY_Return;
  const xkb_keysym_t symbol = xkb_utf32_to_keysym(character);
  // The library gives symbols to more control characters, such as that of Clear.
  const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
  const bool isKey = symbol == XKB_KEY_BackSpace || symbol == XKB_KEY_Tab || symbol == XKB_KEY_Return ||
                     symbol == XKB_KEY_Escape || symbol == XKB_KEY_Delete;
  return symbol == XKB_KEY_NoSymbol || (isControl && !isKey) ? std::nullopt : std::optional<std::uint32_t>(symbol);
}

std::u32string typableCharacters(std::string_view text) {
  if (const auto place = malformedByte(text))
    throw failure(DesktopFault::untypable, fmt::format("at byte {}, which is not UTF-8", *place + 1));
  std::u32string characters;
  std::size_t place = 0;
  while (place < text.size()) {
    char32_t character = 0;
    U8_NEXT_UNSAFE(text.data(), place, character);
    if (!symbolOfCharacter(character))
      throw failure(DesktopFault::untypable, fmt::format("U+{:04X}", static_cast<std::uint32_t>(character)));
    characters += character;
  }
  return characters;
}

} // namespace tabwright::platform
