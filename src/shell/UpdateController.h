#pragma once

#include "updates/UpdateOutcome.h"

#include <functional>
#include <memory>
#include <string>

namespace tabwright::shell {

/// Is told what comes of checks for newer versions. On the main actor.
class UpdateControllerDelegate {
public:
  virtual ~UpdateControllerDelegate() = default;

  /// The address of the feed that is to be looked at; empty: none.
  [[nodiscard]] virtual std::string feedURLStringForUpdater() const = 0;
  /// The feed is there and could be read.
  virtual void updaterDidFinishLoadingAppcast() = 0;
  virtual void updaterDidFindValidUpdate() = 0;
  virtual void updaterDidNotFindUpdate() = 0;
  /// The check is over, whatever came of it.
  virtual void updaterDidFinishUpdateCycleForUpdateCheck() = 0;
};

/// The machinery that looks for newer versions, as far as the life of the program has to do with it. On the main actor.
/// Nothing throws: failures are outcomes.
class UpdateController {
public:
  virtual ~UpdateController() = default;

  /// Starts the regular checks. Called once, when the main window's content first appears.
  virtual void startUpdater() = 0;

  /// Checks now. The outcome is presented.
  virtual void checkForUpdates() = 0;

  /// Puts the update that was found last in place of this copy, where its outcome said that it can be. What comes of it
  /// is presented.
  virtual void installUpdate() = 0;

  /// Shows an outcome that the user waits for; those of the regular checks are shown to nobody.
  using Present = std::function<void(const updates::UpdateOutcome&)>;
  virtual void setPresent(Present present) = 0;
};

/// Makes the controller, not started yet. The delegate outlives it.
using MakeUpdateController = std::function<std::unique_ptr<UpdateController>(UpdateControllerDelegate&)>;

} // namespace tabwright::shell
