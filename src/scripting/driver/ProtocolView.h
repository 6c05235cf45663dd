#pragma once

#include "devtools/Targets.h"
#include "platform/Mutex.h"
#include "scripting/driver/BrowserView.h"
#include "scripting/driver/PageSessions.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace tabwright::scripting {

/// The browser as the protocol alone shows it, for one that takes no helper.
///
/// The protocol knows neither the order of windows nor that of tabs, so these are guesses, good enough to work with:
/// windows and tabs stand in the order in which they were first seen, a window that we raised or made stands in front,
/// and a window's active tab is one whose page says that it is visible. Tab ids are made from the protocol's own names,
/// so another process sees the same. Given names last as long as the connection.
class ProtocolView final : public BrowserView {
public:
  /// `pages` outlives this.
  ProtocolView(std::shared_ptr<devtools::Connection> connection, PageSessions& pages, std::string version);

  /// Always the whole. Costs a call for each tab, and one to a page in each window at least; a page that is busy adds
  /// half a second.
  ViewedBrowser look(const Extent& extent, const CallLimits& limits) override;
  /// Nothing reports the user's moving of tabs and windows.
  [[nodiscard]] bool reportsChanges() const override { return false; }
  std::int64_t perform(const ViewCommand& command, const CallLimits& limits) override;

private:
  /// A new tab's place in the strip can't be chosen, and its window comes to the front.
  TabID carryOut(const MakeTab& command, const CallLimits& limits);
  WindowID carryOut(const MakeWindow& command, const CallLimits& limits);
  void carryOut(const CloseTab& command, const CallLimits& limits);
  /// Closes its tabs one by one: the protocol closes no windows.
  void carryOut(const CloseWindow& command, const CallLimits& limits);
  void carryOut(const ActivateTab& command, const CallLimits& limits);
  void carryOut(const RaiseWindow& command, const CallLimits& limits);
  void carryOut(const SetGivenName& command, const CallLimits& limits);

  /// A page target, and the tab that it is here.
  struct Page {
    devtools::TargetInfo target;
    TabID tab = 0;
  };
  /// All pages, in the order in which they were first seen.
  std::vector<Page> listPages(const CallLimits& limits);
  /// The id of a target's tab, the same for as long as the connection lasts.
  TabID tabOf(const std::string& target) REQUIRES(mutex_);
  /// Throws DriverFailure `noSuchTab`.
  std::string requireTarget(TabID tab, const CallLimits& limits);
  /// The page that a window shows. Throws DriverFailure `noSuchWindow`.
  std::string activeTarget(WindowID window, const CallLimits& limits);
  /// Returns when the page is gone.
  void closeTarget(const std::string& target, const CallLimits& limits);
  /// In our own order; tells the browser nothing.
  void toFront(WindowID window);

  std::shared_ptr<devtools::Connection> connection_;
  PageSessions& pages_;
  const std::string version_;

  platform::Mutex mutex_;
  std::vector<std::string> seen_ GUARDED_BY(mutex_);                // targets, the first seen first
  std::unordered_map<std::string, TabID> tabs_ GUARDED_BY(mutex_);  // target -> tab
  std::unordered_map<TabID, std::string> taken_ GUARDED_BY(mutex_); // tab -> target
  std::vector<WindowID> order_ GUARDED_BY(mutex_);                  // windows, front first
  std::unordered_map<WindowID, std::string> names_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
