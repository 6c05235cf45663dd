#pragma once

#include "platform/Task.h"

#include <chrono>

namespace tabwright::platform {

/// The time of day, and waiting. Safe to use from any thread.
///
///     co_await clock.sleep(std::chrono::milliseconds(200));
class Clock {
public:
  virtual ~Clock() = default;

  /// Wall time in seconds since the reference date, 2001-01-01 00:00:00 UTC, with its fraction. It may go backwards
  /// when the machine's clock is set.
  [[nodiscard]] virtual double secondsSinceReferenceDate() const = 0;

  /// Suspends the awaiting coroutine for `duration`, measured on a clock that no change of the wall time moves. A
  /// duration of zero or less returns at once. Cancelling the coroutine ends the wait early with the
  /// `boost::system::system_error` of `operation_aborted`.
  virtual Task<void> sleep(std::chrono::nanoseconds duration) = 0;
};

} // namespace tabwright::platform
