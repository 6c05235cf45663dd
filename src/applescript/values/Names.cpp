#include "applescript/values/Names.h"

#include "applescript/terminology/FoldedWords.h"

#include <unicode/unistr.h>

#include <algorithm>

namespace tabwright::applescript {

namespace {

bool isASCII(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

} // namespace

bool isIdentifier(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
  const auto isPart = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); };
  return !name.empty() && isLetter(name.front()) && std::ranges::all_of(name, isPart);
}

std::string foldedName(std::string_view name) {
  std::string folded;
  // Nearly all names: folded without a detour over UTF-16.
  if (std::ranges::all_of(name, isASCII)) {
    folded.resize(name.size());
    std::ranges::transform(name, folded.begin(), foldedLetter);
  } else {
    icu::UnicodeString::fromUTF8({name.data(), static_cast<int32_t>(name.size())}).foldCase().toUTF8String(folded);
  }
  return folded;
}

bool sameName(std::string_view left, std::string_view right) {
  // Each character folds by itself, so the first difference between two that are ASCII decides.
  const std::size_t shorter = std::min(left.size(), right.size());
  for (std::size_t index = 0; index < shorter; ++index) {
    const char a = left[index];
    const char b = right[index];
    if (!isASCII(a) || !isASCII(b))
      return foldedName(left) == foldedName(right);
    if (foldedLetter(a) != foldedLetter(b))
      return false;
  }
  return left.size() == right.size();
}

} // namespace tabwright::applescript
