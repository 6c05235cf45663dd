#pragma once

#include "host/Perform.h"
#include "platform/Clock.h"
#include "rpc/Peer.h"

#include <boost/json/value.hpp>

#include <string>

namespace tabwright::host {

/// Waits for a run and tells the client each second that it still goes on ("notifications/progress" of the Model
/// Context Protocol): the progress is the number of seconds so far, as the whole isn't known. `token` is the client's
/// own name for the call, `tool` the action's. What the run throws is thrown on; cancelling cancels it. Runs on the
/// caller's executor, the peer's; `clock` and `peer` outlive the call.
platform::Task<ActionResult> withProgress(platform::Task<ActionResult> run, rpc::Peer& peer, platform::Clock& clock,
                                          boost::json::value token, std::string tool);

} // namespace tabwright::host
