#pragma once

#include "platform/Notices.h"

#include <chrono>
#include <memory>
#include <stop_token>

namespace tabwright::platform {

/// The manner and time in which a blocking call may wait. A call that takes these ends by the deadline, and at once
/// when a stop is requested; which failure it throws then is told beside the call. They also bring along whom to tell
/// what the call's own answer doesn't.
struct CallLimits {
  std::chrono::steady_clock::time_point deadline = std::chrono::steady_clock::time_point::max();
  std::stop_token stop;
  std::shared_ptr<Notices> notices = {}; ///< null: nobody listens
};

inline void giveNotice(const CallLimits& limits, Notice notice) {
  if (limits.notices)
    limits.notices->add(std::move(notice));
}

/// The limits, with a deadline where they had none: `duration` from now.
[[nodiscard]] inline CallLimits boundedBy(CallLimits limits, std::chrono::steady_clock::duration duration) {
  if (limits.deadline == std::chrono::steady_clock::time_point::max())
    limits.deadline = std::chrono::steady_clock::now() + duration;
  return limits;
}

} // namespace tabwright::platform
