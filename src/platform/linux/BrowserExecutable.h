#pragma once

#include "platform/BrowserTable.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace tabwright::platform {

/// The program that starts a browser: the first of the table's names that is an executable file in a directory of
/// `path` (colon separated, as PATH is). Nothing when the browser is not installed.
[[nodiscard]] std::optional<std::filesystem::path> findExecutable(const BrowserFacts& facts, std::string_view path);

/// The same on this process' own PATH.
[[nodiscard]] std::optional<std::filesystem::path> findExecutable(const BrowserFacts& facts);

} // namespace tabwright::platform
