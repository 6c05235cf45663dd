#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::scripting {

/// Why a browser could not do what was asked.
enum class DriverFault {
  notRunning,        ///< no such browser runs. detail: its name
  notAccepting,      ///< it runs, but doesn't accept remote debugging. detail: its name
  scriptsNotAllowed, ///< it is reached by its helper, which may run no scripts in pages. detail: the switch's page
  profileNotReached, ///< none of its profiles that can be reached is called so. detail: browser and profile
  unreachable,       ///< what its profile tells of its debugging port can't be used. detail: why, as a clause
  lost,              ///< it ended, or the connection broke, during the call or before. detail: why, as a clause
  notAnswering,      ///< it answered nothing at all for a while. detail: for how long
  noSuchTab,         ///< detail: the id
  noSuchWindow,      ///< detail: the id
  tabClosed,         ///< the tab was closed during the call
  tabCrashed,        ///< the page's process has crashed
  dialogOpen,        ///< the page shows a dialog and answers nothing until it is closed. detail: its text
  timedOut,          ///< the deadline passed
  stopped,           ///< a stop was requested
  refused,           ///< the browser refused. detail: why
  malformedAnswer,   ///< it answered in a shape that isn't known. detail: the place and the complaint
};
/// Sentences that say what to do, in the voice of this project; the scripting layer gives them AppleScript's numbers.
/// `detail` is empty for faults that have none.
[[nodiscard]] std::string errorDescription(DriverFault fault, const std::string& detail);
/// `unreachable` is the class of those that leave no browser to speak to; all others have just failed.
[[nodiscard]] platform::FailureIdentity identity(DriverFault fault);
/// Thrown by `platform::failure(DriverFault::…, detail)`.
using DriverFailure = platform::CatalogueFailure<DriverFault>;

} // namespace tabwright::scripting
