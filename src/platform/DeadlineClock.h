#pragma once

#include "platform/Mutex.h"

#include <chrono>
#include <condition_variable>
#include <functional>

namespace tabwright::platform {

struct CallLimits;

/// The clock that the deadlines of calls are read on, and the waiting for them. Calls without one go by the steady
/// clock; a test has its own, so that no wait takes as long as it says. Safe to use from any thread.
class DeadlineClock {
public:
  virtual ~DeadlineClock() = default;

  [[nodiscard]] virtual std::chrono::steady_clock::time_point now() const = 0;
  /// Waits on the condition until `isOver`, which is asked while the lock is held, the deadline or a stop. Yields
  /// `isOver()`.
  virtual bool wait(std::condition_variable_any& condition, MutexLock<Mutex>& lock, const CallLimits& limits,
                    const std::function<bool()>& isOver) = 0;
};

} // namespace tabwright::platform
