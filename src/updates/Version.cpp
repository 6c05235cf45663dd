// Both versions are taken apart from the front at the same time. A version that has ended gives empty parts, which
// stand between words and numbers, so that one comparison serves to the end of the longer one.
#include "updates/Version.h"

#include <algorithm>
#include <cstddef>

namespace tabwright::updates {
namespace {

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

// The next run of digits or of letters; empty at the end.
std::string_view takePart(std::string_view& rest) {
  const auto isWord = [](char character) { return isDigit(character) || isLetter(character); };
  rest.remove_prefix(static_cast<std::size_t>(std::ranges::find_if(rest, isWord) - rest.begin()));
  if (rest.empty())
    return {};
  const auto isSameKind = isDigit(rest.front()) ? isDigit : isLetter;
  const auto end = static_cast<std::size_t>(std::ranges::find_if_not(rest, isSameKind) - rest.begin());
  const std::string_view part = rest.substr(0, end);
  rest.remove_prefix(end);
  return part;
}

// Without leading zeros, so that longer is greater. Zero is empty.
std::string_view digitsOf(std::string_view number) {
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return number;
}

std::strong_ordering compareParts(std::string_view one, std::string_view other) {
  const bool isOneWord = !one.empty() && isLetter(one.front());
  const bool isOtherWord = !other.empty() && isLetter(other.front());
  if (isOneWord || isOtherWord)
    return isOneWord && isOtherWord ? one <=> other : isOtherWord <=> isOneWord;
  const std::string_view value = digitsOf(one);
  const std::string_view otherValue = digitsOf(other);
  return value.size() != otherValue.size() ? value.size() <=> otherValue.size() : value <=> otherValue;
}

} // namespace

std::strong_ordering compareVersions(std::string_view one, std::string_view other) {
  one = one.substr(0, one.find('+'));
  other = other.substr(0, other.find('+'));
  for (;;) {
    const std::string_view part = takePart(one);
    const std::string_view otherPart = takePart(other);
    if (part.empty() && otherPart.empty())
      return std::strong_ordering::equal;
    if (const std::strong_ordering order = compareParts(part, otherPart); order != 0)
      return order;
  }
}

bool isVersion(std::string_view text) {
  constexpr std::size_t longest = 64;
  return !text.empty() && text.size() <= longest && isDigit(text.front()) &&
         std::ranges::all_of(text, [](char character) { return character >= ' ' && character <= '~'; });
}

} // namespace tabwright::updates
