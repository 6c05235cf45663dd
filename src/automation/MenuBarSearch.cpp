#include "automation/MenuBarSearch.h"

#include "automation/ClosedMenus.h"
#include "automation/ElementSearch.h"
#include "automation/FirefoxMenus.h"

#include <vector>

namespace tabwright::automation {

using platform::AccessibleElement;
using platform::AccessibleFacts;

std::shared_ptr<MenuSource> findMenuBar(platform::Accessibility& accessibility, const AccessibleElement& application,
                                        const platform::CallLimits& limits) {
  const AccessibleWindows windows = windowsOf(accessibility, application, limits);
  std::shared_ptr<MenuSource> menus;
  const auto takeBar = [&](const AccessibleElement& element, const AccessibleFacts& facts) {
    if (facts.role != platform::AccessibleRole::menuBar)
      return false;
    const std::vector<AccessibleElement> items = facts.children.value_or(std::vector<AccessibleElement>{});
    // Known by its toolkit rather than by its name, as other programs share it.
    if (windows.toolkit == "Gecko")
      menus = std::make_shared<FirefoxMenus>(accessibility, element, items, limits);
    else
      menus = std::make_shared<ClosedMenus>(accessibility, element, items, limits);
    return true;
  };
  // The active window is the first, so its bar counts before those of others.
  for (const AccessibleWindow& window : windows.all) {
    if (window.facts.children && searchDown(accessibility, *window.facts.children, limits, takeBar))
      break;
  }
  return menus;
}

} // namespace tabwright::automation
