#pragma once

#include <string>

namespace tabwright::app {

/// The background host: serves actions on a socket until it quits by itself, 120.1 seconds after the last of them was
/// started, or until SIGTERM, SIGINT or SIGHUP. Started by `tabwright run`, which hands over the listening socket and
/// the lock (client/HostProtocol.h); `socketPath` is where the socket was made. Nothing is written but the log.
///
/// Returns the exit code: 2 when the descriptors weren't handed over.
[[nodiscard]] int runHost(const std::string& socketPath);

} // namespace tabwright::app
