#pragma once

#include "automation/MenuSource.h"
#include "platform/Accessibility.h"
#include "platform/CallLimits.h"

#include <memory>

namespace tabwright::automation {

/// The menus of the first of its windows that has a menu bar; null when none has. Goes down some levels, and never
/// into documents. Throws DesktopFailure.
[[nodiscard]] std::shared_ptr<MenuSource> findMenuBar(platform::Accessibility& accessibility,
                                                      const platform::AccessibleElement& application,
                                                      const platform::CallLimits& limits);

} // namespace tabwright::automation
