#pragma once

#include <chrono>
#include <stop_token>

namespace tabwright::platform {

/// How and until when a blocking call may wait. A call that takes these ends by the deadline, and at once when a stop
/// is requested; which failure it throws then is told beside the call.
struct CallLimits {
  std::chrono::steady_clock::time_point deadline = std::chrono::steady_clock::time_point::max();
  std::stop_token stop;
};

/// The limits, with a deadline where they had none: `duration` from now.
[[nodiscard]] inline CallLimits boundedBy(CallLimits limits, std::chrono::steady_clock::duration duration) {
  if (limits.deadline == std::chrono::steady_clock::time_point::max())
    limits.deadline = std::chrono::steady_clock::now() + duration;
  return limits;
}

} // namespace tabwright::platform
