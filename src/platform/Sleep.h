#pragma once

#include <chrono>
#include <stop_token>

namespace tabwright::platform {

/// Blocks the thread for this long, and no longer once a stop is requested. False when one is.
bool sleepUnlessStopped(std::chrono::nanoseconds duration, const std::stop_token& stop);

} // namespace tabwright::platform
