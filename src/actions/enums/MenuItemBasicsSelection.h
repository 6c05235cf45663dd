#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The ways in which a menu item is named.
enum class MenuItemBasicsSelection {
  title,         ///< by its title and a `StringFilterEnum`
  path,          ///< by a path in one text
  segmentedPath, ///< by a main menu item and up to four path segments
};

inline constexpr auto menuItemBasicsSelection = intents::enumTable<MenuItemBasicsSelection>({
    {MenuItemBasicsSelection::title, "title"},
    {MenuItemBasicsSelection::path, "path"},
    {MenuItemBasicsSelection::segmentedPath, "segmentedPath"},
});

constexpr intents::EnumDeclaration enumDeclaration(MenuItemBasicsSelection) {
  return {"MenuItemBasicsSelection", intents::tables::enums, menuItemBasicsSelection};
}

} // namespace tabwright::actions
