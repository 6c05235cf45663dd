#include "automation/Patience.h"

#include "platform/DesktopFault.h"
#include "platform/Sleep.h"

namespace tabwright::automation {

bool eventually(const platform::CallLimits& limits, std::chrono::milliseconds patience,
                const std::function<bool()>& isSo) {
  const platform::CallLimits whole = limits.within(patience);
  // Asked at least once, even with no time left.
  while (!isSo()) {
    if (whole.hasPassed())
      return false;
    platform::sleepWithin(whole, std::chrono::milliseconds(10));
    if (limits.stop.stop_requested())
      throw platform::failure(platform::DesktopFault::stopped);
  }
  return true;
}

} // namespace tabwright::automation
