// One scope serves the whole event, so all of it is answered from one snapshot. The order is the same for both
// families: events that the model answers by the tables, then activate and quit, then the family's own commands.
#include "scripting/browser/BrowserApplication.h"

#include "scripting/browser/DriverErrors.h"

#include <utility>

namespace tabwright::scripting {

using applescript::Value;
namespace events = applescript::events;

BrowserApplication::BrowserApplication(const platform::BrowserFacts& facts, std::shared_ptr<BrowserDriver> driver,
                                       BrowserHooks hooks, const ObjectModel& model)
    : name_(facts.name), bundleIdentifier_(facts.id), driver_(std::move(driver)), hooks_(std::move(hooks)),
      model_(model) {}

Value BrowserApplication::handle(const applescript::AppleEventMessage& message) {
  try {
    BrowserScope scope(model_, shared_from_this(), message, *driver_, cache_, hooks_.isFrontmost);
    if (auto answer = model_.answer(scope))
      return std::move(*answer);
    if (message.code == events::activate || message.code == events::run) {
      activate(scope);
      return Value::missing();
    }
    if (message.code == events::quit) {
      // Nothing is left to do for a browser that doesn't run; the driver would throw.
      if (driver_->isRunning())
        scope.perform(Quit{});
      return Value::missing();
    }
    return perform(scope);
  } catch (const DriverFailure& failure) {
    throw scriptError(failure);
  }
}

void BrowserApplication::activate(BrowserScope& scope) {
  // Programs that type activate it before each character.
  if (scope.isFrontmost())
    return;
  // Without a launcher the command below fails, and its error tells how to start the browser.
  if (!driver_->isRunning() && hooks_.launch)
    return hooks_.launch();
  try {
    scope.perform(Activate{});
  } catch (const DriverFailure& failure) {
    // The window system needs no debugging port: a browser that takes no commands still comes to the front.
    const bool isOutOfReach = failure.kind() == DriverFault::notAccepting || failure.kind() == DriverFault::unreachable;
    if (!isOutOfReach || !hooks_.raise)
      throw;
    try {
      hooks_.raise();
    } catch (const platform::Failure&) {
      throw failure; // which says what to do
    }
  }
}

} // namespace tabwright::scripting
