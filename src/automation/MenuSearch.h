#pragma once

#include "automation/AxeMenuItem.h"
#include "automation/DesktopServices.h"
#include "automation/MenuItemEntity.h"
#include "automation/TitlePattern.h"
#include "platform/CallLimits.h"
#include "targets/BrowserProbe.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

// The ways in which actions name a menu item of a running application. Each reads the menus as they are now, presses
// nothing, blocks its thread until the limits at most, and throws DesktopFailure `stopped` alone.
namespace tabwright::automation {

/// By its title, anywhere in the menus; see `AxeMenuBar`.
[[nodiscard]] MenuItemResult findMenuItemByTitle(const targets::RunningApplication& app, std::string_view title,
                                                 StringFilterEnum filter, TitleCase titleCase,
                                                 const DesktopServices& services, const platform::CallLimits& limits);

/// By a path in one text, such as "File > Export…".
[[nodiscard]] MenuItemResult findMenuItemByPath(const targets::RunningApplication& app, std::string_view path,
                                                TitleCase titleCase, const DesktopServices& services,
                                                const platform::CallLimits& limits);

/// By the titles of a path. Those that are missing or blank are left out.
[[nodiscard]] MenuItemResult findMenuItemBySegments(const targets::RunningApplication& app,
                                                    std::span<const std::optional<std::string>> segments,
                                                    TitleCase titleCase, const DesktopServices& services,
                                                    const platform::CallLimits& limits);

/// By what was kept of an earlier find, upper and lower case included. `appCouldNotBeActivated` when its application
/// doesn't run; it isn't started.
[[nodiscard]] MenuItemResult findMenuItemByReference(const MenuItemEntity& reference, const DesktopServices& services,
                                                     const platform::CallLimits& limits);

} // namespace tabwright::automation
