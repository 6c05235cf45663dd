#include "platform/linux/BrowserExecutable.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>
#include <unistd.h>

namespace tabwright::platform {

namespace fs = std::filesystem;

std::optional<fs::path> findExecutable(const BrowserFacts& facts, std::string_view path) {
  for (const std::string_view name : facts.executables) {
    for (std::string_view rest = path; !rest.empty();) {
      const std::size_t end = std::min(rest.find(':'), rest.size());
      const fs::path file = fs::path(rest.substr(0, end)) / name;
      rest.remove_prefix(std::min(end + 1, rest.size()));
      std::error_code error;
      // A relative directory on the PATH would make the answer depend on where we stand.
      if (file.is_absolute() && fs::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0)
        return file;
    }
  }
  return std::nullopt;
}

std::optional<fs::path> findExecutable(const BrowserFacts& facts) {
  const char* path = std::getenv("PATH");
  return findExecutable(facts, path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin");
}

} // namespace tabwright::platform
