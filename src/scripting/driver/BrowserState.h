#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tabwright::scripting {

using TabID = std::int64_t;    ///< the browser's own integer id of a tab
using WindowID = std::int64_t; ///< the browser's own integer id of a window

/// `incognito` is a window of the browser's private profile.
enum class WindowMode { normal, incognito };

struct WindowBounds {
  int left = 0, top = 0, width = 0, height = 0; ///< device-independent pixels, origin at the screen's top left
  friend bool operator==(const WindowBounds&, const WindowBounds&) = default;
};

/// A tab as it was at the moment of its snapshot. Texts are UTF-8, and may be empty while the first page comes.
struct TabState {
  TabID id = 0;
  std::string title;
  std::string url; ///< the address the tab is going to, where a navigation is pending
  bool isLoading = false;
  bool isArriving = false; ///< the page at that address has yet to come
};

/// A window as it was at the moment of its snapshot, be it in sight, minimised or on another workspace.
struct WindowState {
  WindowID id = 0;
  std::string title;     ///< title of the active tab; for a window without tabs, its own
  std::string givenName; ///< name that a script gave it, else empty
  WindowMode mode = WindowMode::normal;
  WindowBounds bounds;
  bool isMinimized = false;
  bool isFullScreen = false;
  std::vector<TabState> tabs;     ///< in strip order; empty for a developer tools window
  std::size_t activeTabIndex = 0; ///< 1-based; 0 for a window without tabs
};

/// All windows of a browser at one moment, front to back. Immutable: whoever holds it may read it from any thread.
struct BrowserSnapshot {
  std::vector<WindowState> windows;
  std::string version; ///< the product's version, such as "156.0.8078.79"
};

/// The tab with this id, which lives as long as the snapshot; null when there is none.
[[nodiscard]] inline const TabState* findTab(const BrowserSnapshot& snapshot, TabID id) {
  for (const WindowState& window : snapshot.windows) {
    const auto found = std::ranges::find(window.tabs, id, &TabState::id);
    if (found != window.tabs.end())
      return &*found;
  }
  return nullptr;
}

} // namespace tabwright::scripting
