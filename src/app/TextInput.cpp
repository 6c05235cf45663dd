#include "app/TextInput.h"

#include "platform/linux/FileDescriptor.h"

#include <fmt/core.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tabwright::app {
namespace {

std::string shownName(const std::string& file) {
  return file == "-" ? "standard input" : file;
}

std::string readAll(int descriptor, const std::string& file) {
  std::string content;
  std::array<char, 65536> buffer{};
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    // Before the bytes are kept: the bound is one of memory.
    if (count > 0 && content.size() + static_cast<std::size_t>(count) > longestText)
      throw intents::UsageError(fmt::format("Can’t read {}: it is longer than {} MiB, the most that is taken.",
                                            shownName(file), longestText >> 20));
    if (count > 0)
      content.append(buffer.data(), static_cast<std::size_t>(count));
    else if (count == 0)
      return content;
    else if (errno != EINTR)
      throw unreadable("read", file, errno);
  }
}

} // namespace

std::string readTextFile(const std::filesystem::path& path) {
  const platform::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen())
    throw unreadable("open", path.string(), errno);
  return readAll(file.number(), path.string());
}

std::string readStandardInput() {
  return readAll(STDIN_FILENO, "-");
}

intents::UsageError unreadable(const std::string& operation, const std::string& file, int errorNumber) {
  return intents::UsageError(fmt::format("Can’t {} {}: {}.", operation, shownName(file), std::strerror(errorNumber)));
}

} // namespace tabwright::app
