#pragma once

#include "scripting/browser/BrowserScope.h"
#include "scripting/model/ObjectClass.h"

namespace tabwright::scripting {

// Properties of applications and windows that both browser families have, in the same words and codes. Each family's
// tables take what its own dictionary lists. Getters answer from the event's snapshot; setters throw ScriptError −1700
// for a value of another kind, and DriverFailure.

/// True when the browser is the desktop's frontmost application; false where nobody can tell.
Found applicationFrontmost(BrowserScope& scope, Object);
/// Such as "156.0.8078.79". Takes a snapshot, so it fails for a browser that doesn't run.
Found applicationVersion(BrowserScope& scope, Object);
/// The name by which scripts know the browser; asks nobody.
Found applicationName(BrowserScope& scope, Object);
/// Asks the driver, and connects to nothing.
Found applicationRunning(BrowserScope& scope, Object);

/// 1-based, the frontmost first.
Found windowIndex(BrowserScope& scope, Object window);
/// 1 raises the window; a higher index puts it there by raising those that belong in front of it, and it. Negative ones
/// count from the back. Throws −1719 for 0 and beyond the ends.
void setWindowIndex(BrowserScope& scope, Object window, const applescript::Value& value);
/// The title that users see: the name that a script gave the window, else its active tab's title.
Found windowName(BrowserScope& scope, Object window);
/// False for a minimised window, which is the one way of being out of sight here.
Found windowVisible(BrowserScope& scope, Object window);
/// False minimises the window. True gives it its normal shape, which ends full screen too.
void setWindowVisible(BrowserScope& scope, Object window, const applescript::Value& value);
/// The opposite of `visible`.
Found windowMinimized(BrowserScope& scope, Object window);
void setWindowMinimized(BrowserScope& scope, Object window, const applescript::Value& value);
/// Zoomed means full screen.
Found windowZoomed(BrowserScope& scope, Object window);
void setWindowZoomed(BrowserScope& scope, Object window, const applescript::Value& value);
/// {left, top, right, bottom} in device-independent pixels, from the screen's top left.
Found windowBounds(BrowserScope& scope, Object window);
/// Ends being minimised or full screen.
void setWindowBounds(BrowserScope& scope, Object window, const applescript::Value& value);
/// The properties that hold for every window: closeable, resizable, …
Found always(BrowserScope& scope, Object object);

/// The address that the tab is going to, where a navigation is pending.
Found tabURL(BrowserScope& scope, Object tab);
/// Starts loading an address; returns when the navigation has begun.
void setTabURL(BrowserScope& scope, Object tab, const applescript::Value& value);
Found tabTitle(BrowserScope& scope, Object tab);

/// Bounds as a script gives them, {left, top, right, bottom}; throws −1700 for anything else. Edges beyond a million
/// pixels are taken for a million.
[[nodiscard]] WindowBounds requireBounds(const applescript::Value& value);

// Elements: the tabs of a window, by position.
std::size_t countTabs(BrowserScope& scope, Object window);
/// Opens a tab at the end of a window or before a 0-based place in it; yields the tab's id. An empty address is the new
/// tab page. Throws DriverFailure.
TabID openTab(BrowserScope& scope, Object window, std::optional<std::size_t> position, const std::string& url);

} // namespace tabwright::scripting
