#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Case of ASCII letters, for names that have no others: ids, schemes, the names of actions and parameters. All other
/// bytes stay as they are. Texts of users are compared by Unicode's rules instead.
namespace tabwright::platform {

/// The letter in lower case. The C library's tolower goes by the process' locale, which must not change an id.
[[nodiscard]] constexpr char lowercasedLetter(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// The text with its ASCII letters in lower case; UTF-8 stays UTF-8, since bytes of other characters aren't touched.
[[nodiscard]] inline std::string lowercased(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), lowercasedLetter);
  return lower;
}

/// True for texts that `lowercased` makes the same, without a copy of either.
[[nodiscard]] constexpr bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, {}, lowercasedLetter, lowercasedLetter);
}

} // namespace tabwright::platform
