#pragma once

#include <string>
#include <string_view>

namespace tabwright::html {

/// The place of a text, which decides about character references and about NUL.
enum class TextPlace {
  content,   ///< references count, NUL is left out
  foreign,   ///< references count, NUL becomes U+FFFD
  attribute, ///< as `foreign`, but a reference without a semicolon doesn't count before a letter, a digit or "="
  raw        ///< references don't count, NUL becomes U+FFFD
};

/// The text as it is read: with line ends made line feeds and references replaced. Itself where there is nothing to
/// do, otherwise a view of `room`, which is overwritten.
[[nodiscard]] std::string_view readText(std::string_view text, TextPlace place, std::string& room);

} // namespace tabwright::html
