#pragma once

#include "actions/SharedParameters.h"

#include <vector>

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

  using Fields = std::vector<const intents::ParameterBase*>;
  /// The two forms of the summary of an action on a tab: with a specific tab `targetTab` counts, else `targetContext`.
  /// In the sentence the fields that name the tab stand between `before` and `behind`.
  [[nodiscard]] std::vector<intents::SummaryRow> summary(const Fields& before, const Fields& behind = {},
                                                         const Fields& further = {}) const;
};

} // namespace tabwright::actions
