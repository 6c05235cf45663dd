#pragma once

#include "intents/UsageError.h"

#include <cstddef>
#include <filesystem>
#include <string>

namespace tabwright::app {

/// Of a text from outside, in bytes: what never ends, such as /dev/zero, must not take all memory.
inline constexpr std::size_t longestText = std::size_t{64} << 20;

/// The whole of a file, or of standard input, as bytes, whether they are text or not; a relative path starts at this
/// process's folder. Blocks until the end has come, which a pipe decides. Throws `UsageError` with the path and the
/// reason, and for what is longer than `longestText`.
[[nodiscard]] std::string readTextFile(const std::filesystem::path& path);
[[nodiscard]] std::string readStandardInput();

/// The sentence about a file, or standard input as "-", that can't be read: `operation` is "open" or "read", the number
/// an errno value.
[[nodiscard]] intents::UsageError unreadable(const std::string& operation, const std::string& file, int errorNumber);

} // namespace tabwright::app
