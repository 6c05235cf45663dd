#pragma once

#include "automation/AxeElement.h"

#include <span>
#include <vector>

namespace tabwright::automation {

/// An element and all that is below it, as read at one time.
struct MenuTree {
  AxeElement element;
  std::vector<MenuTree> children;

  /// As `AxeElement::isSubMenu`, but without asking the application again.
  [[nodiscard]] bool isSubMenu() const { return element.isItem() && children.size() == 1; }
  /// The items of the menu that the item opens; none for an item without one.
  [[nodiscard]] std::span<const MenuTree> subItems() const {
    return isSubMenu() ? std::span<const MenuTree>(children.front().children) : std::span<const MenuTree>();
  }
};

/// Reads the whole tree, a level at a time. What can't be read has no children. Menus that hold themselves end at a
/// depth that no user would go to. Throws DesktopFailure `stopped`.
[[nodiscard]] MenuTree readMenuTree(const AxeElement& root);

} // namespace tabwright::automation
