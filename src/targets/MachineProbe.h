#pragma once

#include "platform/linux/RunningBrowsers.h"
#include "targets/BrowserProbe.h"

namespace tabwright::targets {

/// The machine that this process runs on: a browser is installed when one of its executables is on the PATH, and runs
/// when the process file system shows it.
class MachineProbe final : public BrowserProbe {
public:
  [[nodiscard]] bool isInstalled(const platform::BrowserFacts& browser) const override;
  [[nodiscard]] bool isRunning(const platform::BrowserFacts& browser) const override;

private:
  platform::RunningBrowsers running_;
};

} // namespace tabwright::targets
