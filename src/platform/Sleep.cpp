// Waits on a condition that nobody ever notifies: of all waits of the standard library, only those of a condition end
// with a stop token.
#include "platform/Sleep.h"

#include "platform/Mutex.h"

#include <condition_variable>

namespace tabwright::platform {

bool sleepUnlessStopped(std::chrono::nanoseconds duration, const std::stop_token& stop) {
  Mutex mutex;
  std::condition_variable_any never;
  MutexLock lock(mutex);
  never.wait_for(lock, stop, duration, [] { return false; });
  return !stop.stop_requested();
}

void sleepWithin(const CallLimits& limits, std::chrono::steady_clock::duration duration) {
  Mutex mutex;
  std::condition_variable_any never;
  MutexLock lock(mutex);
  limits.within(duration).wait(never, lock, [] { return false; });
}

} // namespace tabwright::platform
