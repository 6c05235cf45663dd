#pragma once

#include "platform/AppleEvent.h"

#include <string>

namespace tabwright::applescript {

using platform::FourCharCode;
using platform::fourCharCode;

/// `'pnam'` as the four characters "pnam"; bytes that don't print in ASCII come out as dots, so the text is always four
/// characters and valid UTF-8, but needn't give the code back.
[[nodiscard]] inline std::string toString(FourCharCode code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const auto byte = static_cast<unsigned char>(code >> shift);
    text += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
  }
  return text;
}

} // namespace tabwright::applescript
