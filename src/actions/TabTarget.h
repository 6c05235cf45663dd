#pragma once

#include "actions/SharedParameters.h"

namespace tabwright::actions {

/// The three parameters by which a user names a tab: the front tab of a browser, or a tab that an earlier action gave.
/// A member of an action's class, it enters them into the action in this order; `aimAtTab` in the action's constructor
/// makes them count.
struct TabTarget {
  TabTarget(ActionFrame& action, const ActionServices& services,
            shared::TargetDescription description = shared::TargetDescription::tabSelection)
      : targetContext(action, shared::targetContext(services, description)),
        tabSelection(action, shared::tabSelection()), targetTab(action, shared::targetTab()) {}

  Parameter<engine::TargetContext> targetContext;
  Parameter<TabSelectionOption> tabSelection;
  Parameter<browserdata::BrowserTabEntity> targetTab;

  /// The condition of the summary that shows `targetTab`; the other one shows `targetContext`.
  [[nodiscard]] intents::SummaryCondition isSpecific() const {
    return intents::is(tabSelection, TabSelectionOption::specificTab);
  }
};

} // namespace tabwright::actions
