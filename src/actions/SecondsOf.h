#pragma once

#include "intents/EnumDeclaration.h"

#include <string_view>

namespace tabwright::actions {

/// `text` read as a decimal number, whatever the locale; 0.0 when anything else stands in it.
[[nodiscard]] double secondsOf(std::string_view text);

/// The seconds that an option stands for: its raw value as a decimal number.
template <intents::DeclaredEnum Option>
[[nodiscard]] double secondsOf(Option option) {
  return secondsOf(intents::enumCase(option).rawValue);
}

} // namespace tabwright::actions
