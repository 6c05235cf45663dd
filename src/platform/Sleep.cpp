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

} // namespace tabwright::platform
