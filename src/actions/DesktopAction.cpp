#include "actions/DesktopAction.h"

#include "automation/ApplicationLaunch.h"
#include "engine/Scriptacular.h"

namespace tabwright::actions {

platform::Task<void> DesktopAction::resolveFrontmostBrowser(Parameter<targets::ApplicationTarget>& targetContext) {
  if (*targetContext != engine::frontmostTargetContext())
    co_return;
  auto lookup = engine::Scriptacular::forOnboarding(services().scripts);
  co_await lookup.resolveFrontmostBrowser();
  targetContext.set(targets::ApplicationTarget(lookup.targetContext()));
}

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
