#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The ways in which a menu item is named where an earlier action's result will do as well.
enum class MenuItemFullSelection {
  title,         ///< by its title and a `StringFilterEnum`
  path,          ///< by a path in one text
  segmentedPath, ///< by a main menu item and up to four path segments
  reference,     ///< by a reference that an earlier action returned
};

inline constexpr auto menuItemFullSelection = intents::enumTable<MenuItemFullSelection>({
    {MenuItemFullSelection::title, "title"},
    {MenuItemFullSelection::path, "path"},
    {MenuItemFullSelection::segmentedPath, "segmentedPath"},
    {MenuItemFullSelection::reference, "reference"},
});

constexpr intents::EnumDeclaration enumDeclaration(MenuItemFullSelection) {
  return {"MenuItemFullSelection", intents::tables::enums, menuItemFullSelection};
}

} // namespace tabwright::actions
