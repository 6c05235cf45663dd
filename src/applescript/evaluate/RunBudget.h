#pragma once

#include "applescript/evaluate/Surroundings.h"

#include <cstddef>
#include <stop_token>

namespace tabwright::applescript {

/// Bounds how long a run goes on: counts its steps, and now and then looks whether it has been stopped. Belongs to the
/// thread of the run; the stop may be requested from any.
class RunBudget {
public:
  RunBudget(const RunLimits& limits, std::stop_token stop) : limit_(limits.steps), stop_(std::move(stop)) {}

  /// One statement, expression or round of a loop. Throws −128 when the run has to end.
  void step() {
    if (--untilCheckpoint_ == 0)
      checkpoint();
  }
  /// The run has been stopped, or has tried to take a step more than its limit.
  [[nodiscard]] bool isSpent() const { return stop_.stop_requested() || isUsedUp_; }
  /// Throws −128 when the run has to end: before and after whatever takes long.
  void require() const;
  [[nodiscard]] const std::stop_token& stop() const { return stop_; }

private:
  void checkpoint();

  // 0: none.
  std::size_t limit_;
  // The first step is a checkpoint, for a run that has been stopped before it begins.
  std::size_t untilCheckpoint_ = 1;
  // Counted by chunks of at most 256, ahead of being taken.
  std::size_t taken_ = 0;
  bool isUsedUp_ = false;
  std::stop_token stop_;
};

} // namespace tabwright::applescript
