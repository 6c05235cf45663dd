#pragma once

#include "platform/BrowserTable.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace tabwright::platform {

/// This process' PATH; where it has none, the usual folders. Valid until the environment changes.
[[nodiscard]] std::string_view programPath();

/// The first executable file of that name in a directory of `path` (colon separated, as PATH is). Relative directories
/// don't count: they would make the answer depend on where we stand. Links are followed. Nothing when there is none.
[[nodiscard]] std::optional<std::filesystem::path> findProgram(std::string_view name, std::string_view path);

/// True for a program that can be run: an executable file's path, or a name that `findProgram` finds.
[[nodiscard]] bool isProgram(std::string_view nameOrPath, std::string_view path);

/// The program that starts a browser: the first of the table's names that is found on `path`. Nothing when there is
/// none; the browser may be installed nevertheless, as one that is started by its desktop entry alone.
[[nodiscard]] std::optional<std::filesystem::path> findExecutable(const BrowserFacts& facts, std::string_view path);

/// The same on this process' own PATH.
[[nodiscard]] std::optional<std::filesystem::path> findExecutable(const BrowserFacts& facts);

} // namespace tabwright::platform
