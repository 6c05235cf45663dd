#pragma once

#include "platform/linux/InstalledBrowsers.h"
#include "platform/linux/RunningBrowsers.h"
#include "targets/BrowserProbe.h"

#include <functional>

namespace tabwright::targets {

/// The machine that this process runs on. Installed are the browsers of the table with a program on the PATH or with a
/// desktop entry, under the table's names.
class MachineProbe final : public BrowserProbe {
public:
  using Applications = std::function<std::vector<RunningApplication>()>;

  /// `applications` lists what runs, as the desktop knows it. Without it, only browsers are known: those of the process
  /// file system, and the one started last counts as frontmost.
  explicit MachineProbe(Applications applications = {},
                        platform::RunningBrowsers browsers = platform::RunningBrowsers(),
                        platform::InstallationPlaces places = platform::InstallationPlaces::ofThisProcess());

  [[nodiscard]] std::vector<engine::TargetContext> installedApplications() const override;
  [[nodiscard]] std::vector<RunningApplication> runningApplications() const override;

private:
  Applications applications_;
  platform::RunningBrowsers browsers_;
  platform::InstallationPlaces places_;
};

} // namespace tabwright::targets
