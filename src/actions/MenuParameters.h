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

  /// The title of the menu bar's item.
  Parameter<std::string> main;
  Parameter<std::string> segment1;
  Parameter<std::string> segment2;
  Parameter<std::string> segment3;
  Parameter<std::string> segment4;

  /// All five, for declarations and summaries.
  [[nodiscard]] std::vector<const intents::ParameterBase*> all() const {
    return {&main, &segment1, &segment2, &segment3, &segment4};
  }
  /// Their values from the bar down; the search leaves out those that are missing or blank.
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

/// The choice among the ways to name an item: by its title, unless the user says otherwise.
[[nodiscard]] intents::ParameterSpec<MenuItemBasicsSelection> basicsSelection();
/// A title; actions with two items have two, so each gives the name and an example of its own.
[[nodiscard]] intents::ParameterSpec<std::string> title(std::string_view name, std::string_view example);
/// A path in one text, such as "File > Save As…".
[[nodiscard]] intents::ParameterSpec<std::string> path(std::string_view name, std::string_view example);
/// The way in which titles are compared: as a whole, unless the user says otherwise.
[[nodiscard]] intents::ParameterSpec<automation::StringFilterEnum> titleFilter();
/// Upper and lower case count unless the user says so.
[[nodiscard]] intents::ParameterSpec<bool> caseInsensitive();
/// The pause after a success; none by default.
[[nodiscard]] intents::ParameterSpec<PostActionDelay> postActionDelay();
/// An item that an earlier action found.
[[nodiscard]] intents::ParameterSpec<automation::MenuItemEntity> menuItem(intents::Presence presence);

} // namespace menuparameters

} // namespace tabwright::actions
