#pragma once

#include "scripting/driver/BrowserCommand.h"
#include "scripting/driver/BrowserState.h"
#include "scripting/driver/DriverFault.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tabwright::scripting {

/// A snapshot, and the protocol's name for the page in each of its tabs.
struct ViewedBrowser {
  /// Not null in what a look yields.
  std::shared_ptr<const BrowserSnapshot> snapshot;
  std::unordered_map<TabID, std::string> targets; ///< empty text for a tab whose page is not loaded
  /// Tabs whose first page has not come yet: they still show the empty document that every tab begins with.
  std::unordered_set<TabID> opening;
  /// When a window of the browser last had the focus, in milliseconds since 1970, as far as the browser knows; else 0.
  double lastFocus = 0;
};

/// The windows and tabs of one connected browser, seen and commanded through the helper in the browser, or, where
/// the browser does not take it, by the protocol alone.
///
///     const ViewedBrowser viewed = view.look({.isWhole = true}, limits);
///     const std::string& page = viewed.targets.at(viewed.snapshot->windows.front().tabs.front().id);
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
  /// True when every change in the browser is reported to us, so that what was seen holds until then.
  [[nodiscard]] virtual bool reportsChanges() const = 0;

  /// Carries out a command. Yields its number, where it has one; else 0. `noSuchTab` and `noSuchWindow` for what is
  /// gone.
  virtual std::int64_t perform(const ViewCommand& command, const CallLimits& limits) = 0;
};

} // namespace tabwright::scripting
