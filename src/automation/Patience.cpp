#include "automation/Patience.h"

#include "platform/DesktopFault.h"

#include <condition_variable>
#include <mutex>

namespace tabwright::automation {

bool eventually(const platform::CallLimits& limits, std::chrono::milliseconds patience,
                const std::function<bool()>& isSo) {
  const platform::CallLimits whole = limits.within(patience);
  std::mutex mutex;
  std::condition_variable_any nobody;
  std::unique_lock lock(mutex);
  while (!isSo()) {
    if (whole.hasPassed())
      return false;
    whole.within(std::chrono::milliseconds(10)).wait(nobody, lock, [] { return false; });
    if (limits.stop.stop_requested())
      throw platform::failure(platform::DesktopFault::stopped);
  }
  return true;
}

} // namespace tabwright::automation
