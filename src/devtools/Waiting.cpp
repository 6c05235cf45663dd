#include "devtools/Waiting.h"

#include "devtools/DevToolsFault.h"

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
  std::mutex mutex;
  std::condition_variable_any never;
  std::unique_lock lock(mutex);
  const auto until = std::chrono::steady_clock::now() + duration;
  never.wait_until(lock, limits.stop, std::min(until, limits.deadline), [] { return false; });
  if (limits.stop.stop_requested() || until > limits.deadline)
    throwUnfulfilled(what, limits);
}

Turn::Holder::~Holder() {
  {
    const std::lock_guard lock(turn_->mutex_);
    turn_->isTaken_ = false;
  }
  turn_->released_.notify_one();
}

Turn::Holder Turn::take(const char* what, const platform::CallLimits& limits) {
  std::unique_lock lock(mutex_);
  if (!released_.wait_until(lock, limits.stop, limits.deadline, [this] { return !isTaken_; }))
    throwUnfulfilled(what, limits);
  isTaken_ = true;
  return Holder(this);
}

} // namespace tabwright::devtools
