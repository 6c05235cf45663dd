#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// The place of the first byte that belongs to no character; nothing for a text that is UTF-8. Well formed is what the
/// Unicode Standard calls so: no overlong forms, no surrogates, nothing beyond U+10FFFF. Counts from 0.
[[nodiscard]] std::optional<std::size_t> malformedByte(std::string_view text);

/// The text with U+FFFD in place of what isn't UTF-8, for where something must be said all the same. Never fails; a
/// text that is UTF-8 comes back as it is. Each byte that belongs to no character becomes one.
[[nodiscard]] std::string wellFormed(std::string text);

} // namespace tabwright::platform
