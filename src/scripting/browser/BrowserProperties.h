#pragma once

#include "scripting/browser/BrowserScope.h"
#include "scripting/model/ObjectClass.h"

namespace tabwright::scripting {

// Properties of applications and windows that both browser families have, in the same words and codes. Each family's
// tables take what its own dictionary lists.

Found applicationFrontmost(BrowserScope& scope, Object);
Found applicationVersion(BrowserScope& scope, Object);
Found applicationName(BrowserScope& scope, Object);
Found applicationRunning(BrowserScope& scope, Object);

Found windowIndex(BrowserScope& scope, Object window);
/// 1 raises the window; a higher index puts it there by raising those that belong in front of it, and it.
void setWindowIndex(BrowserScope& scope, Object window, const applescript::Value& value);
/// The title that users see: the name that a script gave the window, else its active tab's title.
Found windowName(BrowserScope& scope, Object window);
Found windowVisible(BrowserScope& scope, Object window);
void setWindowVisible(BrowserScope& scope, Object window, const applescript::Value& value);
Found windowMinimized(BrowserScope& scope, Object window);
void setWindowMinimized(BrowserScope& scope, Object window, const applescript::Value& value);
Found windowZoomed(BrowserScope& scope, Object window);
void setWindowZoomed(BrowserScope& scope, Object window, const applescript::Value& value);
/// {left, top, right, bottom}
Found windowBounds(BrowserScope& scope, Object window);
void setWindowBounds(BrowserScope& scope, Object window, const applescript::Value& value);
/// The properties that hold for every window: closeable, resizable, …
Found always(BrowserScope& scope, Object object);

Found tabURL(BrowserScope& scope, Object tab);
/// Starts loading an address.
void setTabURL(BrowserScope& scope, Object tab, const applescript::Value& value);
Found tabTitle(BrowserScope& scope, Object tab);

/// Bounds as a script gives them, {left, top, right, bottom}; throws −1700 for anything else.
[[nodiscard]] WindowBounds requireBounds(const applescript::Value& value);

// Elements: the tabs of a window, by position.
std::size_t countTabs(BrowserScope& scope, Object window);
/// Opens a tab at the end of a window or at a place in it; the tab's id.
TabID openTab(BrowserScope& scope, Object window, std::optional<std::size_t> position, const std::string& url);

} // namespace tabwright::scripting
