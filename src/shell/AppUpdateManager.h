#pragma once

#include "shell/AppState.h"
#include "shell/UpdateController.h"

#include <memory>
#include <string>

namespace tabwright::shell {

/// Keeps the program up to date: gives the controller of updates the feed's address, offers the menu's command, and
/// notes in `AppState::isAppUpdateAvailable` what the last check found. One per process, on the main actor.
class AppUpdateManager final : public UpdateControllerDelegate {
public:
  /// `make` may be empty: then there is no controller. `appState` outlives the manager.
  AppUpdateManager(AppState& appState, MakeUpdateController make);
  AppUpdateManager(const AppUpdateManager&) = delete;
  AppUpdateManager& operator=(const AppUpdateManager&) = delete;

  /// The one controller, made without starting when it is first asked for; null when there is none. Lives as long as
  /// the manager.
  [[nodiscard]] UpdateController* sharedUpdaterController();

  /// The target that a control of a window is bound to.
  void checkForUpdates();
  /// The effect of the menu's command: checks now, and has the outcome presented.
  void checkForUpdatesOnDemand();

  [[nodiscard]] std::string feedURLStringForUpdater() const override;
  void updaterDidFindValidUpdate() override;
  void updaterDidNotFindUpdate() override;
  void updaterDidFinishLoadingAppcast() override;
  void updaterDidFinishUpdateCycleForUpdateCheck() override;

private:
  AppState& appState_;
  const MakeUpdateController make_;
  std::unique_ptr<UpdateController> updaterController_;
};

} // namespace tabwright::shell
