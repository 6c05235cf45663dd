#pragma once

#include "platform/Keyboard.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::scripting {

/// One key as a page sees it: the attributes of KeyboardEvent (W3C, UI Events), and the text that it enters.
///
///     pageKeysOf("A") // {{.key = "A", .code = "KeyA", .keyCode = 65, .text = "A", .isShifted = true}}
///     pageKeysOf("ü") // {{.text = "ü"}}
struct PageKey {
  std::string key;  ///< "a", "Enter", "PageDown"; empty for a text that no key gives, which is inserted as a whole
  std::string code; ///< "KeyA", "NumpadEnter": the place on the keyboard
  int keyCode = 0;  ///< the legacy number, 0 for none
  std::string text{};
  bool isShifted = false; ///< shift is held for it
  bool isOnKeypad = false;
};

/// The key that a page sees for a key of the keyboard, known by its symbol; nothing for keys that only the browser or
/// the desktop know, and for letters, which have their text.
[[nodiscard]] std::optional<PageKey> pageKeyOf(const platform::Key& key);

/// The keys that type a text. Characters of a US keyboard are keys of it, line feed and carriage return are Enter, what
/// stands between them is inserted. Nothing for a text with other control characters, or that is no UTF-8.
[[nodiscard]] std::optional<std::vector<PageKey>> pageKeysOf(std::string_view text);

} // namespace tabwright::scripting
