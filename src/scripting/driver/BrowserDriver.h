#pragma once

#include "platform/CallLimits.h"
#include "platform/Failure.h"

#include <boost/json/value.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::scripting {

using TabID = std::int64_t;    ///< the browser's own integer id of a tab
using WindowID = std::int64_t; ///< the browser's own integer id of a window

enum class WindowMode { normal, incognito };

struct WindowBounds {
  int left = 0, top = 0, width = 0, height = 0; ///< device-independent pixels, origin at the screen's top left
  friend bool operator==(const WindowBounds&, const WindowBounds&) = default;
};

struct TabState {
  TabID id = 0;
  std::string title;
  std::string url; ///< the address the tab is going to, where a navigation is pending
  bool isLoading = false;
  bool isArriving = false; ///< the page at that address has yet to come
};

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

using platform::CallLimits; ///< until when a driver may wait

/// Why a browser could not do what was asked.
enum class DriverFault {
  notRunning,   ///< no such browser runs. detail: its name
  notAccepting, ///< it runs, but doesn't accept remote debugging. detail: its name
  unreachable,  ///< what its profile tells of its debugging port can't be used. detail: why, as a clause
  lost,         ///< it ended, or the connection broke, during the call or before. detail: why, as a clause
  notAnswering, ///< it answered nothing at all for a while. detail: for how long
  noSuchTab,    ///< detail: the id
  noSuchWindow, ///< detail: the id
  tabClosed,    ///< the tab was closed during the call
  tabCrashed,   ///< the page's process has crashed
  dialogOpen,   ///< the page shows a dialog and answers nothing until it is closed. detail: its text
  timedOut,     ///< the deadline passed
  stopped,      ///< a stop was requested
  refused,      ///< the browser refused, detail: why
};
/// Sentences that say what to do, in the voice of this project; the scripting layer gives them AppleScript's numbers.
[[nodiscard]] std::string errorDescription(DriverFault fault, const std::string& detail);
[[nodiscard]] platform::FailureIdentity identity(DriverFault fault);
using DriverFailure = platform::CatalogueFailure<DriverFault>;

/// One real browser, reached by whatever way there is to it. The way (a debugging protocol, a helper in the browser)
/// and the words of a scripting dictionary know nothing of each other; this interface is where they meet.
///
/// All calls block, may come from several threads at once, and throw DriverFailure. Every call ends by its deadline,
/// and at once when the browser is lost, its tab crashes or closes, or a dialog opens in it: nothing waits for ever.
class BrowserDriver {
public:
  virtual ~BrowserDriver() = default;

  /// Whether the browser runs now. Connects to nothing, throws nothing.
  [[nodiscard]] virtual bool isRunning() = 0;

  /// The windows and tabs as they are. Costs at most one round trip, and none when nothing can have changed since the
  /// last one: no change was reported by the browser, and no command or evaluation of ours has run.
  virtual std::shared_ptr<const BrowserSnapshot> snapshot(const CallLimits& limits) = 0;

  /// Evaluates JavaScript in the page's own world, awaiting a promise, and yields its value. `undefined`, `null`,
  /// and a thrown exception give JSON null; what JSON can't say (functions, symbols) gives null; non-finite numbers
  /// give null. Texts of any length come whole.
  virtual boost::json::value evaluate(TabID tab, const std::string& javascript, const CallLimits& limits) = 0;

  /// Opens a tab at the end of the window's strip, or at a 0-based index, showing `url` (empty: the new tab page), and
  /// makes it the window's active tab. Does not raise the window.
  virtual TabID makeTab(WindowID window, std::optional<std::size_t> index, const std::string& url,
                        const CallLimits& limits) = 0;
  /// Opens a window with one tab, in front.
  virtual WindowID makeWindow(WindowMode mode, const std::string& url, const CallLimits& limits) = 0;
  virtual void closeTab(TabID tab, const CallLimits& limits) = 0;
  virtual void closeWindow(WindowID window, const CallLimits& limits) = 0;

  /// Makes the tab its window's active one, without raising the window.
  virtual void activateTab(TabID tab, const CallLimits& limits) = 0;
  /// Starts loading an address; returns when the navigation has begun, not when the page is there.
  virtual void navigate(TabID tab, const std::string& url, const CallLimits& limits) = 0;
  enum class History { back, forward };
  virtual void goInHistory(TabID tab, History direction, const CallLimits& limits) = 0;
  virtual void reload(TabID tab, const CallLimits& limits) = 0;
  virtual void stopLoading(TabID tab, const CallLimits& limits) = 0;

  /// Brings the window to the front of the browser's windows, and of the desktop's.
  virtual void raiseWindow(WindowID window, const CallLimits& limits) = 0;
  virtual void setBounds(WindowID window, WindowBounds bounds, const CallLimits& limits) = 0;
  enum class WindowShape { normal, minimized, fullScreen };
  virtual void setShape(WindowID window, WindowShape shape, const CallLimits& limits) = 0;
  /// Keeps a name for the window, for as long as it lives, across connections.
  virtual void setGivenName(WindowID window, const std::string& name, const CallLimits& limits) = 0;

  /// Brings the browser's front window to the front of the desktop.
  virtual void activate(const CallLimits& limits) = 0;
  /// Asks the browser to close all windows and end.
  virtual void quit(const CallLimits& limits) = 0;
};

} // namespace tabwright::scripting
