#pragma once

#include "platform/DeadlineClock.h"
#include "platform/Mutex.h"
#include "platform/Notices.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <stop_token>

namespace tabwright::platform {

/// The deadline and the stop of a blocking call: it ends by the deadline, and at once when a stop is requested. Each
/// call documents the failure that it throws then. Notices that are no part of the call's answer go to `notices`.
///
///     accessibility.applications(limits.within(std::chrono::seconds(1)));
///
/// Copies are cheap and share the stop, the notices and the clock. Limits as made are none: no deadline, no stop.
struct CallLimits {
  std::chrono::steady_clock::time_point deadline = std::chrono::steady_clock::time_point::max();
  std::stop_token stop;
  std::shared_ptr<Notices> notices = {};     ///< null: they are dropped
  std::shared_ptr<DeadlineClock> clock = {}; ///< null: the steady clock

  /// The time by which the deadline is told; only comparable with times of the same clock.
  [[nodiscard]] std::chrono::steady_clock::time_point now() const {
    return clock ? clock->now() : std::chrono::steady_clock::now();
  }
  /// True at the deadline and after it. A stop doesn't count.
  [[nodiscard]] bool hasPassed() const { return now() >= deadline; }

  /// The same limits, but none later than `duration` from now. A duration of zero or less leaves no time.
  [[nodiscard]] CallLimits within(std::chrono::steady_clock::duration duration) const {
    CallLimits nearer = *this;
    nearer.deadline = std::min(deadline, now() + duration);
    return nearer;
  }

  /// Waits on the condition until `isOver`, the deadline or a stop. Yields `isOver()`. `isOver` is asked while the lock
  /// is held.
  template <class Predicate>
  bool wait(std::condition_variable_any& condition, MutexLock<Mutex>& lock, Predicate isOver) const {
    return clock ? clock->wait(condition, lock, *this, isOver) : condition.wait_until(lock, stop, deadline, isOver);
  }
};

/// Adds a notice for the caller of the whole run; nothing happens where the limits take none.
inline void giveNotice(const CallLimits& limits, Notice notice) {
  if (limits.notices)
    limits.notices->add(std::move(notice));
}

/// The limits, with a deadline where they had none: `duration` from now. A deadline that there is stays, be it nearer
/// or further. For calls that must end though their caller set no end.
[[nodiscard]] inline CallLimits boundedBy(const CallLimits& limits, std::chrono::steady_clock::duration duration) {
  return limits.deadline == std::chrono::steady_clock::time_point::max() ? limits.within(duration) : limits;
}

} // namespace tabwright::platform
