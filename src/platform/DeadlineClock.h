#pragma once

#include "platform/Mutex.h"

#include <chrono>
#include <condition_variable>
#include <functional>

namespace tabwright::platform {

struct CallLimits;

/// The clock that the deadlines of calls are read on, and the waiting for them. Calls without one go by the steady
/// clock; a test has its own, so that no wait takes as long as it says. Safe to use from any thread. The limits of a
/// call carry it down to whoever waits (`CallLimits::wait`), so nobody in between has to know of it.
class DeadlineClock {
public:
  virtual ~DeadlineClock() = default;

  /// The present. Deadlines are made from this time (`CallLimits::within`) and compared with it, never with another
  /// clock's.
  [[nodiscard]] virtual std::chrono::steady_clock::time_point now() const = 0;
  /// Waits on the condition until `isOver`, which is asked while the lock is held, the deadline or a stop. Yields
  /// `isOver()`. Returns by the deadline on this clock even when nobody notifies the condition. The caller holds the
  /// lock, and holds it again afterwards.
  virtual bool wait(std::condition_variable_any& condition, MutexLock<Mutex>& lock, const CallLimits& limits,
                    const std::function<bool()>& isOver) = 0;
};

} // namespace tabwright::platform
