// Connecting is tried first. Where nobody listens, the lock decides: whoever gets it starts the host, the others try
// to connect again, since a host is about to come, or about to go and leave the lock to the next.
#include "client/HostSocket.h"

#include "client/HostProgram.h"
#include "client/HostProtocol.h"
#include "client/HostUnavailable.h"
#include "client/RuntimeFolder.h"
#include "session/UnheldFiles.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace tabwright::client {
namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds connectPatience{5000};
constexpr Milliseconds longestPause{20};
constexpr int callersAtOnce = 1024; // that may wait to be accepted
constexpr timeval sendPatience{.tv_sec = 30, .tv_usec = 0};

class Descriptor {
public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0)
      ::close(number_);
  }
  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] int release() { return std::exchange(number_, -1); }

private:
  int number_;
};

HostUnavailable refused(const std::string& deed, const std::string& path, int error) {
  return HostUnavailable(deed + " " + path + " failed: " + std::strerror(error));
}

int makeSocket() {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (socket < 0)
    throw HostUnavailable(std::string("No socket can be made: ") + std::strerror(errno));
  return socket;
}

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  // Room for 107 bytes: the short path, through the folder's descriptor, always fits.
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

/// True for an error that the system gives a caller where nobody listens, or not for long any more.
bool isNobodyThere(int error) {
  return error == ENOENT || error == ECONNREFUSED || error == ECONNRESET;
}

void requireOwnPeer(int socket) {
  ucred peer{};
  socklen_t length = sizeof peer;
  if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0 || peer.uid != ::geteuid())
    throw HostUnavailable("The background host at hand belongs to somebody else");
}

/// A connected socket, or -1 when nobody listens.
int tryToConnect(const RuntimeFolder& folder, const std::string& name) {
  Descriptor socket(makeSocket());
  ::setsockopt(socket.number(), SOL_SOCKET, SO_SNDTIMEO, &sendPatience, sizeof sendPatience); // connecting counts
  const sockaddr_un address = addressOf(folder.shortPathOf(name));
  if (::connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    // Anything else won't change by trying again, such as a folder that can't be read.
    if (!isNobodyThere(errno))
      throw refused("Connecting to", folder.pathOf(name), errno);
    return -1;
  }
  requireOwnPeer(socket.number());
  return socket.release();
}

/// The lock, or -1 when another process has it, or has just removed it.
int tryToLock(const RuntimeFolder& folder, const std::string& name) {
  Descriptor lock(::openat(folder.descriptor(), name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (lock.number() < 0)
    throw refused("Opening", folder.pathOf(name), errno);
  if (!session::hold(lock.number())) {
    if (errno != EWOULDBLOCK)
      throw refused("Locking", folder.pathOf(name), errno);
    return -1;
  }
  // A host that ended in between has removed the file: the lock on it would lock nobody out.
  return session::isStillAt(folder.descriptor(), name, lock.number()) ? lock.release() : -1;
}

int listenAt(const RuntimeFolder& folder, const std::string& name) {
  Descriptor socket(makeSocket());
  const sockaddr_un address = addressOf(folder.shortPathOf(name));
  if (::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(socket.number(), callersAtOnce) != 0)
    throw refused("Listening at", folder.pathOf(name), errno);
  return socket.release();
}

} // namespace

ConnectedHost connectToHost(const RuntimeFolder& folder, const std::string& identity, const std::string& programPath) {
  ConnectedHost connection;
  const auto isConnected = [&](const std::string& socketName) {
    connection.socket = tryToConnect(folder, socketName);
    return connection.socket >= 0;
  };
  const std::string socketName = identity + handover::socketEnding;
  const auto deadline = std::chrono::steady_clock::now() + connectPatience;
  // Short at first: a host that is about to leave, or another caller about to make the socket, takes a moment.
  for (Milliseconds pause{1};; pause = std::min(pause * 2, longestPause)) {
    if (isConnected(socketName))
      return connection;
    if (const Descriptor lock(tryToLock(folder, identity + handover::lockEnding)); lock.number() >= 0) {
      // Looked for before there is a socket: nobody is to connect to one that will never be served.
      const std::string program = hostProgram(programPath);
      // A host that ends in order takes its socket away before it gives up the lock.
      if (::unlinkat(folder.descriptor(), socketName.c_str(), 0) == 0)
        connection.isAfterUnexpectedEnd = true;
      const Descriptor listening(listenAt(folder, socketName));
      // The socket listens already, so callers can connect while the host is still on its way.
      startHost(program, folder.pathOf(socketName), listening.number(), lock.number());
      if (isConnected(socketName))
        return connection;
    }
    if (std::chrono::steady_clock::now() > deadline)
      throw HostUnavailable("The background host takes no connections at " + folder.pathOf(socketName));
    std::this_thread::sleep_for(pause);
  }
}

} // namespace tabwright::client
