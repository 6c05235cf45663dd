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
struct CallLimits {
  std::chrono::steady_clock::time_point deadline = std::chrono::steady_clock::time_point::max();
  std::stop_token stop;
  std::shared_ptr<Notices> notices = {};     ///< null: they are dropped
  std::shared_ptr<DeadlineClock> clock = {}; ///< null: the steady clock

  [[nodiscard]] std::chrono::steady_clock::time_point now() const {
    return clock ? clock->now() : std::chrono::steady_clock::now();
  }
  [[nodiscard]] bool hasPassed() const { return now() >= deadline; }

  /// The same limits, but none later than `duration` from now.
  [[nodiscard]] CallLimits within(std::chrono::steady_clock::duration duration) const {
    CallLimits nearer = *this;
    nearer.deadline = std::min(deadline, now() + duration);
    return nearer;
  }

  /// Waits on the condition until `isOver`, the deadline or a stop. Yields `isOver()`.
  template <class Predicate>
  bool wait(std::condition_variable_any& condition, MutexLock<Mutex>& lock, Predicate isOver) const {
    return clock ? clock->wait(condition, lock, *this, isOver) : condition.wait_until(lock, stop, deadline, isOver);
  }
};

inline void giveNotice(const CallLimits& limits, Notice notice) {
  if (limits.notices)
    limits.notices->add(std::move(notice));
}

/// The limits, with a deadline where they had none: `duration` from now.
[[nodiscard]] inline CallLimits boundedBy(const CallLimits& limits, std::chrono::steady_clock::duration duration) {
  return limits.deadline == std::chrono::steady_clock::time_point::max() ? limits.within(duration) : limits;
}

} // namespace tabwright::platform
