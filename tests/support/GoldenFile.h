#pragma once

#include "support/SourceFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace tabwright::testsupport {

/// Expects `text` to be what the file under tests/ holds, to the last byte. With the environment variable
/// TABWRIGHT_REWRITE_GOLDEN set the file is written anew, and the change is there for someone to read.
inline void expectGolden(std::string_view text, const std::string& path) {
  const std::filesystem::path file = sourceFolder() / "tests" / path;
  if (std::getenv("TABWRIGHT_REWRITE_GOLDEN"))
    std::ofstream(file, std::ios::binary) << text;
  EXPECT_EQ(text, sourceText(file)) << "see tests/" << path;
}

} // namespace tabwright::testsupport
