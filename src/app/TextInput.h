#pragma once

#include <filesystem>
#include <string>

namespace tabwright::app {

/// The whole of a file, or of standard input, as bytes. Throws `UsageError` with the path and the reason.
[[nodiscard]] std::string readTextFile(const std::filesystem::path& path);
[[nodiscard]] std::string readStandardInput();

} // namespace tabwright::app
