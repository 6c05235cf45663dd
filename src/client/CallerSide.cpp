// Plain system calls: streams would cost more at start than all else that the client does.
#include "client/CallerSide.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tabwright::client {
namespace {

// Escaped as JSON it stays below the longest message that the host takes, unless it is full of control characters.
constexpr std::size_t longestContent = std::size_t{8} << 20;

} // namespace

TerminalFacts terminalFacts() {
  TerminalFacts facts;
  facts.isOutput = ::isatty(STDOUT_FILENO) == 1;
  winsize size{};
  if (facts.isOutput && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
    facts.width = size.ws_col;
  return facts;
}

std::optional<std::string> askAtTerminal(const std::string& question) {
  if (::isatty(STDIN_FILENO) != 1)
    return std::nullopt;
  writeAll(STDERR_FILENO, question + " ");
  std::string line;
  for (;;) {
    char character = 0;
    const ssize_t count = ::read(STDIN_FILENO, &character, 1);
    if (count < 0 && errno == EINTR)
      continue;
    if (count <= 0 && line.empty())
      return std::nullopt;
    if (count <= 0 || character == '\n')
      return line;
    line += character;
  }
}

void writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR)
      continue;
    if (count < 0)
      return;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

FileContent readContent(const std::string& file) {
  const bool isStandardInput = file == "-";
  const int descriptor = isStandardInput ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0)
    return {.content = {}, .refused = "open", .errorNumber = errno};
  FileContent result;
  static char buffer[65536];
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
    if (count == 0)
      break;
    if (count < 0 && errno == EINTR)
      continue;
    if (count > 0)
      result.content.append(buffer, static_cast<std::size_t>(count));
    if (count < 0 || result.content.size() > longestContent) {
      result = {.content = {}, .refused = "read", .errorNumber = count < 0 ? errno : EFBIG};
      break;
    }
  }
  if (!isStandardInput)
    ::close(descriptor);
  if (!result.refused && !isUTF8(result.content))
    return {.content = {}, .refused = "read", .errorNumber = EILSEQ};
  return result;
}

bool isUTF8(std::string_view text) {
  for (std::size_t index = 0; index < text.size();) {
    const auto first = static_cast<unsigned char>(text[index]);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || index + length > text.size())
      return false;
    std::uint32_t point = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t next = index + 1; next < index + length; ++next) {
      const auto byte = static_cast<unsigned char>(text[next]);
      if ((byte & 0xC0U) != 0x80)
        return false;
      point = point << 6 | (byte & 0x3FU);
    }
    const bool isSurrogate = point >= 0xD800 && point < 0xE000;
    if (isSurrogate || (length == 3 && point < 0x800) || (length == 4 && (point < 0x10000 || point > 0x10FFFF)))
      return false;
    index += length;
  }
  return true;
}

} // namespace tabwright::client
