#pragma once

#include "platform/linux/InstalledBrowsers.h"
#include "targets/BrowserProbe.h"

#include <functional>
#include <utility>
#include <vector>

namespace tabwright::targets {

/// The machine that this process runs on. Installed are the browsers of the table with a program on the PATH or with a
/// desktop entry, under the table's names. The function that it is given tells which applications run, so this knows no
/// desktop.
///
///     const MachineProbe probe([&] { return runningApplications(desktop); });
///     const TargetContextManager manager(probe);
class MachineProbe final : public BrowserProbe {
public:
  /// Called from any thread; the frontmost application comes first.
  using Applications = std::function<std::vector<RunningApplication>()>;

  /// `running` lists the running applications, as the desktop knows them.
  explicit MachineProbe(Applications running,
                        platform::InstallationPlaces places = platform::InstallationPlaces::ofThisProcess())
      : running_(std::move(running)), places_(std::move(places)) {}

  /// In the order of the table. Throws `platform::FileFailure` only when this process has run short of descriptors or
  /// memory.
  [[nodiscard]] std::vector<engine::TargetContext> installedApplications() const override;
  /// As the function tells them, unchanged.
  [[nodiscard]] std::vector<RunningApplication> runningApplications() const override { return running_(); }

private:
  Applications running_;
  platform::InstallationPlaces places_;
};

} // namespace tabwright::targets
