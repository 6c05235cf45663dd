#pragma once

#include "intents/UsageError.h"

#include <filesystem>
#include <string>

namespace tabwright::app {

/// The whole of a file, or of standard input, as bytes. Throws `UsageError` with the path and the reason.
[[nodiscard]] std::string readTextFile(const std::filesystem::path& path);
[[nodiscard]] std::string readStandardInput();

/// What is said of a file, or of standard input as "-", that can't be read: `operation` is "open" or "read", the number
/// an errno value.
[[nodiscard]] intents::UsageError unreadable(const std::string& operation, const std::string& file, int errorNumber);

} // namespace tabwright::app
