#include "platform/linux/FileDescriptor.h"

#include <cerrno>

namespace tabwright::platform {

std::optional<std::string> FileDescriptor::readAll(std::size_t most) const {
  std::string text;
  char buffer[16 * 1024];
  for (;;) {
    const ssize_t count = read(number_, buffer, sizeof buffer);
    if (count == 0)
      return text;
    // A signal is no end: the read goes on.
    if (count < 0 && errno != EINTR)
      return std::nullopt;
    text.append(buffer, count > 0 ? static_cast<std::size_t>(count) : 0);
    if (text.size() > most) {
      errno = EFBIG;
      return std::nullopt;
    }
  }
}

} // namespace tabwright::platform
