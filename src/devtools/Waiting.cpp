#include "devtools/Waiting.h"

#include "devtools/DevToolsFault.h"
#include "platform/Sleep.h"

#include <algorithm>

namespace tabwright::devtools {

namespace {

[[noreturn]] void throwUnfulfilled(const char* what, const platform::CallLimits& limits) {
  if (limits.stop.stop_requested())
    throw platform::failure(DevToolsFault::stopped);
  throw platform::failure(DevToolsFault::timedOut, what);
}

} // namespace

void pause(std::chrono::milliseconds duration, const char* what, const platform::CallLimits& limits) {
  // Sleeps to the deadline only, and says so then: a caller that woke after it would look once more in vain.
  const std::chrono::steady_clock::duration left = limits.deadline - limits.now();
  const bool isStopped =
      !platform::sleepUnlessStopped(std::min<std::chrono::steady_clock::duration>(duration, left), limits.stop);
  if (isStopped || left < duration)
    throwUnfulfilled(what, limits);
}

Turn::Holder::~Holder() {
  {
    const platform::MutexLock lock(turn_->mutex_);
    turn_->isTaken_ = false;
  }
  // Without the lock, so that the one who is woken needn't wait for it again.
  turn_->released_.notify_one();
}

Turn::Holder Turn::take(const char* what, const platform::CallLimits& limits) {
  platform::MutexLock lock(mutex_);
  if (!limits.wait(released_, lock, [this]() REQUIRES(mutex_) { return !isTaken_; }))
    throwUnfulfilled(what, limits);
  isTaken_ = true;
  return Holder(this);
}

} // namespace tabwright::devtools
