#include "targets/MachineProbe.h"

#include "platform/linux/BrowserExecutable.h"

namespace tabwright::targets {

bool MachineProbe::isInstalled(const platform::BrowserFacts& browser) const {
  return platform::findExecutable(browser).has_value();
}

bool MachineProbe::isRunning(const platform::BrowserFacts& browser) const {
  return !running_.find(browser).empty();
}

} // namespace tabwright::targets
