#pragma once

#include "engine/ScriptacularServices.h"
#include "platform/Task.h"
#include "shell/UserDefaultsManager.h"
#include "targets/TargetContextManager.h"

namespace tabwright::shell {

/// The setup's trial of every supported browser: a small script runs against each that is installed, so that whatever
/// the system asks at the first time is asked now. Statuses go to the settings, which views follow.
///
/// `granted` means that the script ran to its end; it swallows what its single steps come upon. Nothing is thrown: an
/// error is the browser's status `denied`.
class BrowserPermissions {
public:
  /// All of it outlives this object.
  struct Surroundings {
    UserDefaultsManager& settings;
    const targets::TargetContextManager& targets;
    engine::ScriptacularServices scripts;
  };

  explicit BrowserPermissions(Surroundings surroundings) : surroundings_(surroundings) {}

  /// One browser after the other; a second or more for each. It writes settings, which may wait for a disk, so it runs
  /// on an executor that draws nothing. One run at a time.
  platform::Task<void> requestBrowserPermissions();

private:
  Surroundings surroundings_;
};

} // namespace tabwright::shell
