#pragma once

#include "platform/linux/InstalledBrowsers.h"
#include "targets/BrowserProbe.h"

#include <functional>
#include <utility>
#include <vector>

namespace tabwright::targets {

/// The machine that this process runs on. Installed are the browsers of the table with a program on the PATH or with a
/// desktop entry, under the table's names.
class MachineProbe final : public BrowserProbe {
public:
  using Applications = std::function<std::vector<RunningApplication>()>;

  /// `running` lists the running applications, as the desktop knows them.
  explicit MachineProbe(Applications running,
                        platform::InstallationPlaces places = platform::InstallationPlaces::ofThisProcess())
      : running_(std::move(running)), places_(std::move(places)) {}

  [[nodiscard]] std::vector<engine::TargetContext> installedApplications() const override;
  [[nodiscard]] std::vector<RunningApplication> runningApplications() const override { return running_(); }

private:
  Applications running_;
  platform::InstallationPlaces places_;
};

} // namespace tabwright::targets
