#pragma once

#include "platform/LogReceiver.h"
#include "rpc/Peer.h"

#include <string_view>

namespace tabwright::host {

/// The protocol's levels of log messages (those of syslog, RFC 5424) and the three of this program: the lowest of ours
/// that a client sees which asked for `level`. Throws `RpcError` for a name that is no level.
[[nodiscard]] platform::LogLevel logLevelFor(std::string_view level);

/// Hands the program's log to a client as "notifications/message", the category as the logger's name. May be called
/// from any thread, and longer than the peer lives: `Notifier` sees to both.
[[nodiscard]] platform::LogReceiver logMessagesTo(rpc::Peer::Notifier client);

} // namespace tabwright::host
