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
///
///     if (waitForExit(browser, limits.within(5s)) == ProcessExit::timedOut) ...
///
/// Goes by the steady clock, whatever clock the limits have. A process that took over the number of one that had ended
/// is watched in its place.
[[nodiscard]] ProcessExit waitForExit(pid_t process, const CallLimits& limits);

} // namespace tabwright::platform
