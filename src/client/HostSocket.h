#pragma once

#include <string>

namespace tabwright::client {

class RuntimeFolder;

/// Connects to the host of the given identity, and starts it when there is none. Yields the descriptor of a connected
/// stream socket, to be closed by the caller; sending on it gives up after half a minute without progress, receiving
/// doesn't.
///
/// However many processes call this at once, one host is started and all are connected to it: whoever gets the lock
/// beside the socket makes the socket, so that it takes connections before the host has even been started. Nobody waits
/// for the host here.
///
/// Throws HostUnavailable when there is none to be had within five seconds, or the one at hand is another user's.
[[nodiscard]] int connectToHost(const RuntimeFolder& folder, const std::string& identity,
                                const std::string& programPath);

} // namespace tabwright::client
