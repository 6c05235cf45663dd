#pragma once

#include "platform/CallLimits.h"

#include <chrono>
#include <stop_token>

namespace tabwright::platform {

/// Blocks the thread for this long, and no longer once a stop is requested. False when one is. For waits that no
/// deadline bounds.
bool sleepUnlessStopped(std::chrono::nanoseconds duration, const std::stop_token& stop);
/// The same by the limits' clock, and no longer than the limits allow. A stop or the deadline ends it early without a
/// word: the caller looks at the limits. A duration of zero or less returns at once.
void sleepWithin(const CallLimits& limits, std::chrono::steady_clock::duration duration);

} // namespace tabwright::platform
