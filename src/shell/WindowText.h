#pragma once

#include "platform/StringCatalogue.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace tabwright::shell {

/// The table of all that windows and menus show.
inline constexpr std::string_view windowTable = "Windows";

/// The text of a key of that table in the user's language, with "%1$@", "%2$@"… replaced by `arguments`.
[[nodiscard]] inline std::string windowText(std::string_view key,
                                            std::initializer_list<std::string_view> arguments = {}) {
  return platform::localizedFormat(key, arguments, windowTable);
}

} // namespace tabwright::shell
