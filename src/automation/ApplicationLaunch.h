#pragma once

#include "automation/DesktopServices.h"
#include "platform/CallLimits.h"
#include "platform/Task.h"
#include "targets/BrowserProbe.h"

#include <optional>
#include <string>

namespace tabwright::automation {

/// Brings an application to the front, and starts it first where it doesn't run. `id` is a target's, in lower case: a
/// browser's, that of an application that runs, or that of a desktop entry; or the frontmost entry's, for whichever
/// application is in front.
///
/// One that has been started is waited for until it shows a window, for some 5 seconds. Yields the application as it is
/// then; nothing where there is none of this id, where it can't be started, and where it hasn't shown a window in time.
/// Why is in the log. A desktop whose windows can't be brought to the front is no failure: a notice of the limits tells
/// it. A cancelled sleep counts as slept.
platform::Task<std::optional<targets::RunningApplication>>
activateOrLaunch(std::string id, const DesktopServices& services, platform::CallLimits limits);

/// The target with its application's whole id, for one that was given by its short name; others as they are.
/// Looks among running applications first, then among installed ones. In lower case, as all targets' ids.
[[nodiscard]] engine::TargetContext withWholeID(engine::TargetContext target, const DesktopServices& services);

} // namespace tabwright::automation
