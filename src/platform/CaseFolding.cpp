#include "platform/CaseFolding.h"

#include <unicode/unistr.h>

#include <cstdint>

namespace tabwright::platform {

std::string caseFolded(std::string_view text) {
  std::string folded;
  icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())}).foldCase().toUTF8String(folded);
  return folded;
}

} // namespace tabwright::platform
