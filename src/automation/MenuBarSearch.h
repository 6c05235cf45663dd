#pragma once

#include "automation/MenuSource.h"
#include "platform/Accessibility.h"
#include "platform/CallLimits.h"

#include <memory>
#include <string>
#include <vector>

namespace tabwright::automation {

/// A window of an application, and what it told of itself.
struct AccessibleWindow {
  platform::AccessibleElement element;
  platform::AccessibleFacts facts;
};

/// The windows of an application, the active one first, the others in the application's order.
struct AccessibleWindows {
  std::string toolkit; ///< the application's; empty where it doesn't tell
  std::vector<AccessibleWindow> all;
};

/// Throws DesktopFailure.
[[nodiscard]] AccessibleWindows windowsOf(platform::Accessibility& accessibility,
                                          const platform::AccessibleElement& application,
                                          const platform::CallLimits& limits);

/// The menus of the first of its windows that has a menu bar; null when none has. Goes down some levels, and never
/// into documents. Throws DesktopFailure.
[[nodiscard]] std::shared_ptr<MenuSource> findMenuBar(platform::Accessibility& accessibility,
                                                      const platform::AccessibleElement& application,
                                                      const platform::CallLimits& limits);

} // namespace tabwright::automation
