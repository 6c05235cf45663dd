#pragma once

#include "session/TrustedFolder.h"

#include <stdexcept>
#include <string>

namespace tabwright::relay {

/// The relay can't do its work. The sentence says why, without a full stop.
struct RelayFailure final : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The socket at which clients find a relay: `PID.sock` in the folder `relay` of the session's (session::runtimePath),
/// with mode 0600. A lock beside it, `PID.lock`, says that its relay lives: what a killed one has left is removed by
/// the next relay that starts. Hosts look into the folder for sockets and may meet one at which nobody listens.
class RelaySocket {
public:
  /// Makes the folders, removes what nobody holds, and listens. Throws RelayFailure, or session::FolderRefused for a
  /// folder that others could change.
  RelaySocket();
  /// For the process `process` in the folder at `path`, whose parent is there.
  RelaySocket(const std::string& path, int process);
  /// Removes the socket and the lock.
  ~RelaySocket();
  RelaySocket(const RelaySocket&) = delete;
  RelaySocket& operator=(const RelaySocket&) = delete;

  /// A listening socket that doesn't block.
  [[nodiscard]] int descriptor() const noexcept { return socket_; }

private:
  void lock();
  void listen();

  const session::TrustedFolder folder_;
  const std::string socketName_;
  const std::string lockName_;
  int lock_ = -1;
  int socket_ = -1;
};

} // namespace tabwright::relay
