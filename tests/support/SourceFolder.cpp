#include "support/SourceFolder.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace tabwright::testsupport {

std::filesystem::path sourceFolder() {
  return TABWRIGHT_SOURCE_DIR;
}

std::string sourceText(const std::filesystem::path& file) {
  std::ifstream stream(sourceFolder() / file, std::ios::binary);
  if (!stream)
    throw std::runtime_error("can't read " + file.string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace tabwright::testsupport
