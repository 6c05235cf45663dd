#include "shell/ExceptionTracker.h"

#include "shell/Varn.h"

#include <string>

namespace tabwright::shell {

void ExceptionTracker::start() {
  reporter_.start();
}

void ExceptionTracker::reportLaunchOfNewRelease() {
  const std::string release = Varn::App::release();
  if (keys_.lastReportedRelease.get() == release)
    return;
  reporter_.captureMessage("Launch " + std::string(Varn::App::version()));
  keys_.lastReportedRelease.set(release);
}

} // namespace tabwright::shell
