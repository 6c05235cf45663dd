// The steps of `perform` stand here in their order, once for all actions; preconditions and pause are functions that
// the action's constructor left behind. They read the parameters when they are called: the constructor runs before the
// host has filled in any value.
#include "actions/ActionFrame.h"

#include "actions/TabTarget.h"
#include "engine/Scriptacular.h"
#include "intents/UsageError.h"
#include "platform/Clock.h"
#include "platform/Whitespace.h"

#include <boost/system/system_error.hpp>

#include <chrono>

namespace tabwright::actions {

platform::Task<boost::json::value> ActionFrame::perform(intents::ActionHost& host) {
  if (registration_ == Registration::beforePreconditions)
    registerRun();
  checkPreconditions();
  co_await prepare(host);
  if (registration_ == Registration::afterPreconditions)
    registerRun();
  Outcome outcome = co_await run(host);
  if (outcome.success == Outcome::Success::yes)
    co_await pause();
  co_return std::move(outcome.value);
}

std::string ActionFrame::scriptText() {
  checkPreconditions();
  return buildScriptText();
}

void ActionFrame::requireText(const Parameter<std::string>& text) {
  require([&text] {
    if (platform::isBlank(*text))
      throw text.needsValueError();
  });
}

void ActionFrame::aimAtTab(TabTarget& tab) {
  aimAt(tab.targetContext);
  takeTargetFrom(tab.targetTab, tab.tabSelection, TabSelectionOption::specificTab, tab.targetContext);
}

platform::Task<engine::TargetContext> ActionFrame::resolved(engine::TargetContext target) {
  if (target != engine::frontmostTargetContext())
    co_return target;
  // As for the setup: the lookup's program tells no version that should be recorded.
  auto lookup = engine::Scriptacular::forOnboarding(services_.scripts);
  co_await lookup.resolveFrontmostBrowser();
  co_return lookup.targetContext();
}

void ActionFrame::registerRun() {
  services_.shutdown.scheduleShutdown();
  if (services_.callCounter)
    services_.callCounter->countCall();
}

platform::Task<void> ActionFrame::prepare(intents::ActionHost& /*host*/) {
  co_return;
}

std::string ActionFrame::buildScriptText() const {
  throw intents::UsageError(name() + " runs no script.");
}

void ActionFrame::checkPreconditions() const {
  for (const std::function<void()>& precondition : preconditions_)
    precondition();
}

platform::Task<void> ActionFrame::pause() {
  const double seconds = pauseSeconds_ ? pauseSeconds_() : 0.0;
  if (seconds <= 0.0)
    co_return;
  try {
    co_await services_.scripts.clock.sleep(
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds)));
  } catch (const boost::system::system_error&) {
    // Cut short: the work is done, and its value is worth having.
  }
}

} // namespace tabwright::actions
