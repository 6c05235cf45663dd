#pragma once

#include <filesystem>
#include <string>

namespace tabwright::testsupport {

/// The checkout's folder. Known to one file only, so that compilers' caches serve checkouts in other places too.
[[nodiscard]] std::filesystem::path sourceFolder();

/// The content of a file, named from there. Throws std::runtime_error where it can't be read.
[[nodiscard]] std::string sourceText(const std::filesystem::path& file);

} // namespace tabwright::testsupport
