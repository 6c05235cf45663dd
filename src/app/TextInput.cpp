#include "app/TextInput.h"

#include "intents/UsageError.h"

#include <fmt/core.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace tabwright::app {
namespace {

std::string readAll(int descriptor, std::string_view name) {
  std::string content;
  std::array<char, 65536> buffer{};
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    if (count > 0)
      content.append(buffer.data(), static_cast<std::size_t>(count));
    else if (count == 0)
      return content;
    else if (errno != EINTR)
      throw intents::UsageError(fmt::format("Can’t read {}: {}.", name, std::strerror(errno)));
  }
}

} // namespace

std::string readTextFile(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0)
    throw intents::UsageError(fmt::format("Can’t open {}: {}.", path.string(), std::strerror(errno)));
  try {
    std::string content = readAll(descriptor, path.string());
    ::close(descriptor);
    return content;
  } catch (...) {
    ::close(descriptor);
    throw;
  }
}

std::string readStandardInput() {
  return readAll(STDIN_FILENO, "standard input");
}

} // namespace tabwright::app
