#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Case of ASCII letters, for names that have no others: ids, schemes, the names of actions and parameters. All other
/// bytes stay as they are. Texts of users are compared by Unicode's rules instead.
namespace tabwright::platform {

[[nodiscard]] constexpr char lowercasedLetter(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

[[nodiscard]] inline std::string lowercased(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), lowercasedLetter);
  return lower;
}

[[nodiscard]] constexpr bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, {}, lowercasedLetter, lowercasedLetter);
}

} // namespace tabwright::platform
