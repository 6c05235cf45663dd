#pragma once

#include "platform/CallLimits.h"

#include <sys/types.h>

namespace tabwright::platform {

enum class ProcessExit {
  ended,    ///< the process is gone, or has ended and only its parent must still take note
  timedOut, ///< it still runs at the deadline
  stopped,  ///< a stop was requested first
};

/// Waits until a process ends, without polling. The process need not be a child of this one. Throws nothing; a process
/// that cannot be watched because it does not exist counts as ended.
[[nodiscard]] ProcessExit waitForExit(pid_t process, const CallLimits& limits);

} // namespace tabwright::platform
