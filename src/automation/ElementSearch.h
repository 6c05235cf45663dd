#pragma once

#include "platform/Accessibility.h"
#include "platform/CallLimits.h"

#include <functional>
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

/// Takes an element with its role and children; true ends the search.
using TakeElement = std::function<bool(const platform::AccessibleElement&, const platform::AccessibleFacts&)>;

/// Goes down from the elements of a level, some levels deep and never into documents, until one is taken. True when one
/// was. Throws DesktopFailure.
bool searchDown(platform::Accessibility& accessibility, std::vector<platform::AccessibleElement> level,
                const platform::CallLimits& limits, const TakeElement& take);

} // namespace tabwright::automation
