#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::devtools {

/// Why something asked of a browser over the DevTools protocol failed.
enum class DevToolsFault {
  unreachable,   ///< no connection could be made. detail: why
  lost,          ///< the connection broke. detail: why
  notAnswering,  ///< the browser answered nothing at all for a while, not even a plain question. detail: for how long
  refused,       ///< the browser answered with an error. detail: the method and the browser's words
  timedOut,      ///< no answer by the deadline. detail: the method
  stopped,       ///< a stop was requested while waiting
  targetGone,    ///< the page was closed or the worker stopped, before or during the call
  targetCrashed, ///< the page's process has crashed
  dialogOpen,    ///< the page shows a dialog, and answers nothing until it is closed. detail: its text
};

/// The sentence of a case, in English, with `detail` put in where the case carries one.
[[nodiscard]] std::string errorDescription(DevToolsFault fault, const std::string& detail);
/// The stable name and the class of a case; those that concern the whole browser are of the class `unreachable`.
[[nodiscard]] platform::FailureIdentity identity(DevToolsFault fault);

/// The thrown value: `throw platform::failure(DevToolsFault::lost, reason)`.
using DevToolsFailure = platform::CatalogueFailure<DevToolsFault>;

/// True when nothing else that is asked of the browser now would fare better.
[[nodiscard]] inline bool concernsBrowser(const DevToolsFailure& failure) {
  return failure.kind() == DevToolsFault::lost || failure.kind() == DevToolsFault::notAnswering;
}

} // namespace tabwright::devtools
