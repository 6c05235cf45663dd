#pragma once

#include "automation/MenuTree.h"

#include <span>
#include <string>
#include <string_view>

namespace tabwright::automation {

/// Tells a user that a menu has no item of a title, and the nearest ones that it has. `path` are the titles of the
/// items that were found; none for the bar. `items` are the menu's.
[[nodiscard]] std::string missingInMenu(std::span<const std::string> path, std::string_view title,
                                        std::span<const AxeElement> items);

/// The same of all menus.
[[nodiscard]] std::string missingInMenus(std::string_view title, const MenuTree& bar);

} // namespace tabwright::automation
