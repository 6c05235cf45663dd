#pragma once

#include <string>

namespace tabwright::client {

class RuntimeFolder;

/// A connection to the host, and what was noticed on the way to it.
struct ConnectedHost {
  int socket = -1; ///< a connected stream socket, to be closed by the caller
  /// The host was started here, and the one before it has left its socket behind: it crashed, or was killed.
  bool isAfterUnexpectedEnd = false;
};

/// Connects to the host of the given identity, and starts it when there is none. Sending on the socket gives up after
/// half a minute without progress, receiving doesn't.
///
/// However many processes call this at once, one host is started and all are connected to it: whoever gets the lock
/// beside the socket makes the socket, so that it takes connections before the host has even been started. Nobody waits
/// for the host here, and one caller at most notices the end of the host before.
///
/// Throws HostUnavailable when there is none to be had within five seconds, or the one at hand is another user's.
[[nodiscard]] ConnectedHost connectToHost(const RuntimeFolder& folder, const std::string& identity,
                                          const std::string& programPath);

} // namespace tabwright::client
