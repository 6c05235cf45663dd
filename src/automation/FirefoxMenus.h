#pragma once

#include "automation/ClosedMenus.h"

namespace tabwright::automation {

/// The menus of Firefox, which fills each when it is shown for the first time, and keeps it filled. So a menu that has
/// no items yet is opened for a moment, with those that lead to it, in sight of the user; the first search of all menus
/// takes seconds therefore, and later ones are like any other's.
class FirefoxMenus final : public ClosedMenus {
public:
  using ClosedMenus::ClosedMenus;

protected:
  [[nodiscard]] ChildLists readChildren(std::span<const AxeElement> level) override;

private:
  /// The menu with the elements that it has once it was shown.
  [[nodiscard]] AxeElement filled(const AxeElement& menu);
  [[nodiscard]] std::vector<platform::AccessibleElement> childrenOf(const platform::AccessibleElement& item);
  [[nodiscard]] bool areVisible(std::span<const platform::AccessibleElement> items);
};

} // namespace tabwright::automation
