// Folders of the PATH that are relative are passed over: what lies there depends on where the program was started.
#include "platform/linux/BrowserExecutable.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::platform {

namespace fs = std::filesystem;

std::string_view programPath() {
  const char* path = std::getenv("PATH");
  return path ? path : "/usr/local/bin:/usr/bin:/bin";
}

std::optional<fs::path> findProgram(std::string_view name, std::string_view path) {
  // One buffer for all folders: this is asked for every browser of the table.
  std::string file;
  for (std::string_view rest = path; !rest.empty();) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    file.assign(rest.substr(0, end)).append("/").append(name);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    struct stat status{};
    // Folders can be entered and so count as executable: only files are programs.
    if (file.starts_with('/') && ::access(file.c_str(), X_OK) == 0 && ::stat(file.c_str(), &status) == 0 &&
        S_ISREG(status.st_mode))
      return fs::path(file);
  }
  return std::nullopt;
}

bool isProgram(std::string_view nameOrPath, std::string_view path) {
  if (nameOrPath.starts_with('/'))
    return ::access(std::string(nameOrPath).c_str(), X_OK) == 0;
  return findProgram(nameOrPath, path).has_value();
}

std::optional<fs::path> findExecutable(const BrowserFacts& facts, std::string_view path) {
  for (const std::string_view name : facts.executables) {
    if (std::optional<fs::path> file = findProgram(name, path))
      return file;
  }
  return std::nullopt;
}

std::optional<fs::path> findExecutable(const BrowserFacts& facts) {
  return findExecutable(facts, programPath());
}

} // namespace tabwright::platform
