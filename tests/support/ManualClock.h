#pragma once

#include "platform/Clock.h"

#include <chrono>
#include <vector>

namespace tabwright::testsupport {

/// A clock that moves only when it is told to, or when someone sleeps: a sleep is over at once and moves it on.
class ManualClock final : public platform::Clock {
public:
  double now = 788918400.25; ///< seconds since the reference date
  std::vector<std::chrono::nanoseconds> sleeps;

  [[nodiscard]] double secondsSinceReferenceDate() const override { return now; }

  platform::Task<void> sleep(std::chrono::nanoseconds duration) override {
    sleeps.push_back(duration);
    now += std::chrono::duration<double>(duration).count();
    co_return;
  }
};

} // namespace tabwright::testsupport
