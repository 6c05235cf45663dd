// The lock is had before the socket is made and kept for as long as the process lives, so a socket without a held lock
// has nobody behind it, and no other relay takes a new one for such.
#include "relay/RelaySocket.h"

#include "session/UnheldFiles.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace tabwright::relay {
namespace {

constexpr std::string_view socketEnding = ".sock";
constexpr std::string_view lockEnding = ".lock";
constexpr int clientsAtOnce = 64; // that may wait to be accepted
// Each attempt that fails has met another relay that was just clearing up.
constexpr int lockAttempts = 5;

std::string folderPath() {
  const session::TrustedFolder parent(session::runtimePath());
  return parent.path() + "/relay";
}

} // namespace

RelaySocket::RelaySocket() : RelaySocket(folderPath(), ::getpid()) {}

RelaySocket::RelaySocket(const std::string& path, int process)
    : folder_(path), socketName_(std::to_string(process).append(socketEnding)),
      lockName_(std::to_string(process).append(lockEnding)) {
  session::removeUnheldFiles(folder_.descriptor(), lockEnding, socketEnding);
  lock();
  try {
    listen();
  } catch (...) {
    ::unlinkat(folder_.descriptor(), lockName_.c_str(), 0);
    ::close(lock_);
    throw;
  }
}

RelaySocket::~RelaySocket() {
  // The lock last: whoever makes the same names next waits for it.
  ::unlinkat(folder_.descriptor(), socketName_.c_str(), 0);
  ::close(socket_);
  ::unlinkat(folder_.descriptor(), lockName_.c_str(), 0);
  ::close(lock_);
}

void RelaySocket::lock() {
  for (int attempt = 0; attempt < lockAttempts; ++attempt) {
    lock_ = ::openat(folder_.descriptor(), lockName_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (lock_ < 0)
      throw RelayFailure("Opening " + folder_.path() + "/" + lockName_ + " failed: " + std::strerror(errno));
    if (session::hold(lock_) && session::isStillAt(folder_.descriptor(), lockName_, lock_))
      return;
    ::close(lock_);
  }
  // A process of another container can have the same number.
  throw RelayFailure("Another relay holds " + folder_.path() + "/" + lockName_);
}

void RelaySocket::listen() {
  // A socket that was left without a lock.
  ::unlinkat(folder_.descriptor(), socketName_.c_str(), 0);
  socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  // Through the descriptor: it is the folder that was checked, and its own path may be longer than an address.
  const std::string path = "/proc/self/fd/" + std::to_string(folder_.descriptor()) + "/" + socketName_;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const mode_t mask = ::umask(0177);
  const bool isBound =
      socket_ >= 0 && ::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  const int bindError = errno;
  ::umask(mask);
  if (isBound && ::listen(socket_, clientsAtOnce) == 0)
    return;
  const int error = isBound ? errno : bindError;
  ::unlinkat(folder_.descriptor(), socketName_.c_str(), 0);
  if (socket_ >= 0)
    ::close(socket_);
  throw RelayFailure("Listening at " + folder_.path() + "/" + socketName_ + " failed: " + std::strerror(error));
}

} // namespace tabwright::relay
