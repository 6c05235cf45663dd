// `tabwright-relay`: started by a browser for the helper in it, by native messaging, and ended with the port that the
// helper has opened. Clients reach the helper at its socket meanwhile. What it has to say goes to standard error, which
// is the browser's.
#include "relay/RelayLoop.h"
#include "relay/RelaySocket.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tabwright::relay {
namespace {

void setNonBlocking(int descriptor) {
  const int flags = ::fcntl(descriptor, F_GETFL);
  if (flags < 0 || ::fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) != 0)
    throw RelayFailure(std::string("The browser’s pipes can’t be used: ") + std::strerror(errno));
}

/// A descriptor that becomes readable when the process is asked to end. From here on no signal of that kind ends it.
int signalsToEnd() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP})
    sigaddset(&signals, signal);
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  const int descriptor = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (descriptor < 0)
    throw RelayFailure(std::string("Signals can’t be received: ") + std::strerror(errno));
  return descriptor;
}

void start() {
  if (::isatty(STDIN_FILENO) == 1)
    throw RelayFailure("A browser starts this program, for the helper in it; there is nothing to be done by hand");
  std::signal(SIGPIPE, SIG_IGN);
  const int stop = signalsToEnd();
  setNonBlocking(STDIN_FILENO);
  setNonBlocking(STDOUT_FILENO);
  const RelaySocket socket;
  RelayLoop({.fromBrowser = STDIN_FILENO, .toBrowser = STDOUT_FILENO, .listening = socket.descriptor(), .stop = stop})
      .run();
}

} // namespace
} // namespace tabwright::relay

int main() {
  try {
    tabwright::relay::start();
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tabwright-relay: %s.\n", error.what());
    return EXIT_FAILURE;
  }
}
