#pragma once

namespace tabwright::html {

/// True for HTML's white space, the standard's "ASCII whitespace". A no-break space is none.
template <class Character>
[[nodiscard]] constexpr bool isSpace(Character character) {
  return character == ' ' || character == '\n' || character == '\t' || character == '\r' || character == '\f';
}

} // namespace tabwright::html
