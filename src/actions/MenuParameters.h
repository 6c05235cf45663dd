#pragma once

#include "actions/ActionFrame.h"
#include "actions/enums/MenuItemBasicsSelection.h"
#include "actions/enums/PostActionDelay.h"
#include "automation/MenuItemEntity.h"
#include "automation/StringFilterEnum.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::actions {

/// The parameters that name a menu item by the titles on its way: the item of the menu bar, and up to four below it. A
/// member of an action's class, it enters them into the action in this order.
struct MenuPathParameters {
  /// `main` is the name of the first one; those of the others are `segment` and 1 to 4.
  MenuPathParameters(ActionFrame& action, std::string_view main, std::string_view segment);

  Parameter<std::string> main;
  Parameter<std::string> segment1;
  Parameter<std::string> segment2;
  Parameter<std::string> segment3;
  Parameter<std::string> segment4;

  [[nodiscard]] std::vector<const intents::ParameterBase*> all() const {
    return {&main, &segment1, &segment2, &segment3, &segment4};
  }
  [[nodiscard]] std::array<std::optional<std::string>, 5> segments() const {
    return {main.value(), segment1.value(), segment2.value(), segment3.value(), segment4.value()};
  }
};

/// The parameters of one menu item, of which the choice looks at one.
struct MenuItemName {
  const Parameter<std::string>& title;
  const Parameter<std::string>& path;
  const MenuPathParameters& segments;
};

/// The parameters that several menu actions have, each declared once. The texts of those shared by name lie in the
/// table "Intents-Browsers", beside the actions' own.
namespace menuparameters {

[[nodiscard]] intents::ParameterSpec<MenuItemBasicsSelection> basicsSelection();
[[nodiscard]] intents::ParameterSpec<std::string> title(std::string_view name, std::string_view example);
[[nodiscard]] intents::ParameterSpec<std::string> path(std::string_view name, std::string_view example);
[[nodiscard]] intents::ParameterSpec<automation::StringFilterEnum> titleFilter();
[[nodiscard]] intents::ParameterSpec<bool> caseInsensitive();
[[nodiscard]] intents::ParameterSpec<PostActionDelay> postActionDelay();
[[nodiscard]] intents::ParameterSpec<automation::MenuItemEntity> menuItem(intents::Presence presence);

} // namespace menuparameters

} // namespace tabwright::actions
