#pragma once

#include "shell/WindowText.h"

#include <QString>
#include <initializer_list>
#include <string_view>

namespace tabwright::views {

[[nodiscard]] inline QString text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// `shell::windowText` for Qt.
[[nodiscard]] inline QString label(std::string_view key, std::initializer_list<std::string_view> arguments = {}) {
  return text(shell::windowText(key, arguments));
}

} // namespace tabwright::views
