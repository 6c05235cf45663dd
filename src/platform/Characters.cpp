// ICU's break iterator walks the UTF-8 as it is, so that long texts aren't copied into UTF-16 to be counted. It is
// costly to make and not to be shared, so each thread keeps one.
#include "platform/Characters.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace tabwright::platform {

std::size_t characterCount(std::string_view text) {
  // Of ASCII only CR LF is one character of two.
  if (std::ranges::all_of(text, [](char character) { return static_cast<unsigned char>(character) < 0x80; }) &&
      !text.contains("\r\n"))
    return text.size();
  UErrorCode status = U_ZERO_ERROR;
  thread_local const std::unique_ptr<icu::BreakIterator> boundaries(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  UText* const utf8 = utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
  std::size_t count = 0;
  if (U_SUCCESS(status) && boundaries) {
    boundaries->setText(utf8, status);
    while (boundaries->next() != icu::BreakIterator::DONE)
      ++count;
  }
  utext_close(utf8);
  return count;
}

std::string inLowerCase(std::string_view text) {
  std::string lower;
  icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())})
      .toLower(icu::Locale::getRoot())
      .toUTF8String(lower);
  return lower;
}

} // namespace tabwright::platform
