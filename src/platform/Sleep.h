#pragma once

#include "platform/CallLimits.h"

#include <chrono>
#include <stop_token>

namespace tabwright::platform {

/// Blocks the thread for this long, and no longer once a stop is requested. False when one is.
bool sleepUnlessStopped(std::chrono::nanoseconds duration, const std::stop_token& stop);
/// The same by the limits' clock, and no longer than the limits allow.
void sleepWithin(const CallLimits& limits, std::chrono::steady_clock::duration duration);

} // namespace tabwright::platform
