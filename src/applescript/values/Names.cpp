#include "applescript/values/Names.h"

#include <unicode/unistr.h>

#include <algorithm>

namespace tabwright::applescript {

namespace {

bool isASCII(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

} // namespace

std::string foldedName(std::string_view name) {
  std::string folded;
  if (isASCII(name)) {
    folded.resize(name.size());
    std::ranges::transform(name, folded.begin(), lower);
  } else {
    icu::UnicodeString::fromUTF8({name.data(), static_cast<int32_t>(name.size())}).foldCase().toUTF8String(folded);
  }
  return folded;
}

bool sameName(std::string_view left, std::string_view right) {
  if (left.size() == right.size() &&
      std::ranges::equal(left, right, [](char a, char b) { return a == b || (lower(a) == lower(b)); }))
    return true;
  return !(isASCII(left) && isASCII(right)) && foldedName(left) == foldedName(right);
}

} // namespace tabwright::applescript
