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
  const std::chrono::steady_clock::duration left = limits.deadline - limits.now();
  never.wait_for(lock, limits.stop, std::min<std::chrono::steady_clock::duration>(duration, left),
                 [] { return false; });
  if (limits.stop.stop_requested() || left < duration)
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
  if (!limits.wait(released_, lock, [this] { return !isTaken_; }))
    throwUnfulfilled(what, limits);
  isTaken_ = true;
  return Holder(this);
}

} // namespace tabwright::devtools
