#pragma once

#include "scripting/driver/BrowserDriver.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tabwright::scripting {

/// A snapshot, and the protocol's name for the page in each of its tabs.
struct ViewedBrowser {
  std::shared_ptr<const BrowserSnapshot> snapshot;
  std::unordered_map<TabID, std::string> targets; ///< empty text for a tab whose page is not loaded
  /// Tabs whose first page has not come yet.
  std::unordered_set<TabID> opening;
  /// When a window of the browser last had the focus, in milliseconds since 1970, as far as the browser knows; else 0.
  double lastFocus = 0;
};

/// How one connected browser's windows and tabs are seen and commanded: through the helper in the browser, or, where
/// the browser does not take it, by the protocol alone.
///
/// All commands return when the change is made: a look that begins later shows it. They throw DriverFailure, or
/// DevToolsFailure for what goes wrong on the way. Safe to use from any thread.
class BrowserView {
public:
  virtual ~BrowserView() = default;

  /// The part of the browser that is looked at. News take the look before for what they show, but for the changes that
  /// the browser has reported, so that the cost does not grow with the number of tabs. They may miss what a command of
  /// ours has just changed, but for the tabs that are named, and a page that a tab was given without a word.
  struct Extent {
    bool isWhole = false;
    std::vector<TabID> tabs{}; ///< looked at in any case
  };

  /// The windows as they are now, front to back.
  virtual ViewedBrowser look(const Extent& extent, const CallLimits& limits) = 0;
  /// Whether every change in the browser is reported to us, so that what was seen holds until then.
  [[nodiscard]] virtual bool reportsChanges() const = 0;

  virtual TabID makeTab(WindowID window, std::optional<std::size_t> index, const std::string& url,
                        const CallLimits& limits) = 0;
  virtual WindowID makeWindow(WindowMode mode, const std::string& url, const CallLimits& limits) = 0;
  virtual void closeTab(TabID tab, const CallLimits& limits) = 0;
  virtual void closeWindow(WindowID window, const CallLimits& limits) = 0;
  virtual void activateTab(TabID tab, const CallLimits& limits) = 0;
  virtual void raiseWindow(WindowID window, const CallLimits& limits) = 0;
  virtual void setGivenName(WindowID window, const std::string& name, const CallLimits& limits) = 0;
};

} // namespace tabwright::scripting
