#include "support/SourceFolder.h"

namespace tabwright::testsupport {

std::filesystem::path sourceFolder() {
  return TABWRIGHT_SOURCE_DIR;
}

} // namespace tabwright::testsupport
