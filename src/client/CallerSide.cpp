// Plain system calls: streams would cost more at start than all else that the client does.
#include "client/CallerSide.h"

#include "client/StandardStreams.h"
#include "session/UTF8.h"

#include <cerrno>
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
  facts.isInput = ::isatty(STDIN_FILENO) == 1;
  facts.isOutput = ::isatty(STDOUT_FILENO) == 1;
  facts.isError = ::isatty(STDERR_FILENO) == 1;
  // Output may go into a pipe while questions are shown on standard error.
  winsize size{};
  for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
    if (::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
      facts.width = size.ws_col;
      break;
    }
  }
  return facts;
}

std::optional<std::string> askAtTerminal(const std::string& question) {
  if (::isatty(STDIN_FILENO) != 1)
    return std::nullopt;
  static_cast<void>(writeText(STDERR_FILENO, question + " "));
  std::string line;
  for (;;) {
    // A byte at a time: what stands behind the line is left to the next question, or the next program.
    char character = 0;
    const ssize_t count = ::read(STDIN_FILENO, &character, 1);
    if (count < 0 && errno == EINTR)
      continue;
    if (count <= 0 && line.empty()) {
      static_cast<void>(writeText(STDERR_FILENO, "\n")); // what comes next doesn't go on behind the question
      return std::nullopt;
    }
    if (count <= 0 || character == '\n')
      return line;
    line += character;
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
  // JSON can carry no other bytes.
  if (!result.refused && !session::isUTF8(result.content))
    return {.content = {}, .refused = "read", .errorNumber = EILSEQ};
  return result;
}

} // namespace tabwright::client
