#include "actions/DesktopAction.h"

#include "automation/ApplicationLaunch.h"

namespace tabwright::actions {

platform::Task<std::optional<targets::RunningApplication>> DesktopAction::tryToActivate(std::string id) {
  return automation::activateOrLaunch(std::move(id), services().desktop, limits());
}

void DesktopAction::giveNotices(intents::ActionHost& host) const {
  for (const platform::Notice& notice : notices_->all())
    host.notice(notice);
}

platform::CallLimits DesktopAction::limits(std::stop_token stop) const {
  return platform::CallLimits{.stop = std::move(stop), .notices = notices_}.within(longestWork);
}

} // namespace tabwright::actions
