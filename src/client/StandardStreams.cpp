#include "client/StandardStreams.h"

#include "client/TerminalText.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tabwright::client {

void occupyClosedStreams() {
  // In this order each is the lowest free number when its turn comes. They are opened the wrong way round, so that
  // reading and writing fail as before.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) // the lowest free number, so the one that open gives
      static_cast<void>(::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY));
  }
}

int writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR)
      continue;
    if (count < 0)
      return errno;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

int writeText(int descriptor, std::string_view text) {
  return ::isatty(descriptor) == 1 ? writeAll(descriptor, terminalText(text)) : writeAll(descriptor, text);
}

std::string notWritten(int errorNumber) {
  return std::string("Standard output can’t be written: ") + std::strerror(errorNumber) + ".";
}

void endByBrokenPipe() {
  std::signal(SIGPIPE, SIG_DFL);
  // A caller may have left the signal blocked, and raising it would do nothing then.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  ::sigprocmask(SIG_UNBLOCK, &signals, nullptr);
  ::raise(SIGPIPE);
  ::_exit(128 + SIGPIPE);
}

} // namespace tabwright::client
