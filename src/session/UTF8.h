#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tabwright::session {

/// A character of a text in UTF-8.
struct UTF8Character {
  /// The code point; no surrogate, as UTF-8 has none.
  std::uint32_t point = 0;
  std::size_t length = 0; ///< its bytes; 0 where no well-formed character begins
};
/// The one that begins at `index`, which is below the text's size.
[[nodiscard]] UTF8Character characterAt(std::string_view text, std::size_t index);

/// True for well-formed text: only that can be sent as JSON (RFC 8259). Empty text is well-formed.
[[nodiscard]] bool isUTF8(std::string_view text);

} // namespace tabwright::session
