#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// The place of the first byte that belongs to no character; nothing for a text that is UTF-8.
[[nodiscard]] std::optional<std::size_t> malformedByte(std::string_view text);

/// The text with U+FFFD in place of what isn't UTF-8, for where something must be said all the same.
[[nodiscard]] std::string wellFormed(std::string text);

} // namespace tabwright::platform
