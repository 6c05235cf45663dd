#pragma once

#include "platform/Clock.h"

namespace tabwright::platform {

/// The machine's clock. `sleep` waits on the steady clock, in the executor of the awaiting coroutine. Stateless: any
/// number of them are one clock.
class SystemClock final : public Clock {
public:
  [[nodiscard]] double secondsSinceReferenceDate() const override;
  Task<void> sleep(std::chrono::nanoseconds duration) override;
};

} // namespace tabwright::platform
