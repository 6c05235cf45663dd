#pragma once

#include "platform/CallLimits.h"
#include "platform/Mutex.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace tabwright::testsupport {

/// A clock of deadlines that stands still until a test lets the time of a wait pass. What is waited for ends waits as
/// ever. Safe to use from any thread.
class SteppedDeadlines final : public platform::DeadlineClock {
public:
  using Time = std::chrono::steady_clock::time_point;

  /// Limits of an hour by the clock.
  [[nodiscard]] static platform::CallLimits limits(const std::shared_ptr<SteppedDeadlines>& clock) {
    platform::CallLimits limits;
    limits.clock = clock;
    return limits.within(std::chrono::hours(1));
  }

  [[nodiscard]] Time now() const override {
    const platform::MutexLock lock(mutex_);
    return now_;
  }

  bool wait(std::condition_variable_any& condition, platform::MutexLock<platform::Mutex>& lock,
            const platform::CallLimits& limits, const std::function<bool()>& isOver) override {
    if (isOver())
      return true;
    add(limits.deadline);
    while (!isOver() && !limits.stop.stop_requested() && !limits.hasPassed())
      condition.wait_for(lock, std::chrono::milliseconds(1));
    remove(limits.deadline);
    return isOver();
  }

  /// Lets time pass that nobody waits for.
  void advance(std::chrono::nanoseconds duration) {
    const platform::MutexLock lock(mutex_);
    now_ += duration;
  }

  /// Once a call waits that will give up in exactly `duration`, lets that time pass. When none comes to do so: false,
  /// and all give up.
  [[nodiscard]] bool pass(std::chrono::nanoseconds duration) {
    for (int look = 0; look < 10'000; ++look) {
      {
        const platform::MutexLock lock(mutex_);
        if (std::ranges::find(waits_, now_ + duration) != waits_.end()) {
          now_ += duration;
          return true;
        }
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const platform::MutexLock lock(mutex_);
    now_ += std::chrono::hours(24);
    return false;
  }

  /// Lets the time pass of all waits that end within `most` from now, until `isOver`. When that never holds, all give
  /// up.
  void passUntil(const std::function<bool()>& isOver, std::chrono::nanoseconds most) {
    const Time last = now() + most;
    for (int look = 0; look < 10'000; ++look) {
      if (isOver())
        return;
      {
        const platform::MutexLock lock(mutex_);
        if (const auto next = std::ranges::min_element(waits_); next != waits_.end() && *next <= last)
          now_ = *next;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const platform::MutexLock lock(mutex_);
    now_ += std::chrono::hours(24);
  }

private:
  void add(Time deadline) {
    const platform::MutexLock lock(mutex_);
    waits_.push_back(deadline);
  }
  void remove(Time deadline) {
    const platform::MutexLock lock(mutex_);
    waits_.erase(std::ranges::find(waits_, deadline));
  }

  mutable platform::Mutex mutex_;
  Time now_ GUARDED_BY(mutex_){std::chrono::hours(1)};
  std::vector<Time> waits_ GUARDED_BY(mutex_); // the deadlines of those who wait
};

} // namespace tabwright::testsupport
