#pragma once

#include "actions/DesktopAction.h"
#include "actions/MenuParameters.h"
#include "automation/MenuSearch.h"

#include <vector>

namespace tabwright::actions {

/// An action on a menu item of an application, which comes to the front first.
class MenuAction : public DesktopAction {
protected:
  using DesktopAction::DesktopAction;

  /// These parameters count only while `selection` is `choice`.
  template <intents::DeclaredEnum Selection>
  void declareChoice(const Parameter<Selection>& selection, Selection choice,
                     const std::vector<const intents::ParameterBase*>& parameters) {
    for (const intents::ParameterBase* parameter : parameters)
      declare({parameter, intents::is(selection, choice)});
  }

  /// Brings the target to the front, and starts it where it doesn't run. Throws `appCouldNotBeActivated`, which most
  /// actions log besides.
  enum class MissingTarget { logged, onlyThrown };
  platform::Task<targets::RunningApplication> activate(const engine::TargetContext& target,
                                                       MissingTarget missing = MissingTarget::logged);

  /// Throws `needsValueError()` for a text without a value or with nothing but white space.
  static void requireGivenText(const Parameter<std::string>& text);
  /// Tests the parameter that `selection` looks at. Segments are tested only where the action says so.
  static void requireName(const MenuItemName& name, MenuItemBasicsSelection selection);

  /// Searches on a thread for what blocks. `filter` counts for a title only. An item that isn't there is an ordinary
  /// result.
  platform::Task<automation::MenuItemResult> find(const targets::RunningApplication& app, const MenuItemName& name,
                                                  MenuItemBasicsSelection selection,
                                                  automation::StringFilterEnum filter, bool isCaseIgnored);
  /// By a reference, whose application is looked for anew. `reference` outlives the search.
  platform::Task<automation::MenuItemResult> find(const automation::MenuItemEntity& reference);
  /// Never fails, whatever the application makes of it.
  platform::Task<void> press(const automation::AxeMenuItem& item);

  /// The action's value: the item as an entity; null for an item of an application without an id.
  [[nodiscard]] static boost::json::value valueOf(const automation::AxeMenuItem& item);
};

} // namespace tabwright::actions
