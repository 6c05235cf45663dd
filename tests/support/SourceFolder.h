#pragma once

#include <filesystem>

namespace tabwright::testsupport {

/// The checkout's folder. Known to one file only, so that compilers' caches serve checkouts in other places too.
[[nodiscard]] std::filesystem::path sourceFolder();

} // namespace tabwright::testsupport
