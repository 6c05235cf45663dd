#pragma once

#include "platform/StringCatalogue.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace tabwright::updates {

/// The sentence in the user's language, with "%1$@", "%2$@"… replaced by `arguments`. English sentences are the keys of
/// their translations.
[[nodiscard]] inline std::string updateText(std::string_view sentence,
                                            std::initializer_list<std::string_view> arguments = {}) {
  return platform::localizedFormat(sentence, arguments, "Updates");
}

} // namespace tabwright::updates
