#pragma once

#include "app/ErrorReports.h"

#include <string>
#include <string_view>

namespace tabwright::app {

/// The background host: serves actions on a socket until it quits by itself, 120.1 seconds after the last of them was
/// started, or until SIGTERM, SIGINT or SIGHUP. Started by `tabwright run`, which hands over the listening socket and
/// the lock (client/HostProtocol.h); `socketPath` is where the socket was made. Nothing is written but the log.
///
/// Crashes and unexpected errors are reported to `reportAddress`, a DSN, unless it is empty.
///
/// Returns the exit code: 2 when the descriptors weren't handed over, as when a user calls the command by hand. Blocks
/// for the host's life. When an action doesn't end within five seconds of the host's end, the process exits around it
/// and nothing returns.
[[nodiscard]] int runHost(const std::string& socketPath, std::string_view reportAddress = builtInReportAddress());

} // namespace tabwright::app
