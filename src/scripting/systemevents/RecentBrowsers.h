#pragma once

#include "platform/linux/RunningBrowsers.h"
#include "scripting/systemevents/Desktop.h"

#include <memory>
#include <vector>

namespace tabwright::scripting {

/// The running browsers of one kind in the order of preference: with several profiles open, the one that the user was
/// in last is meant. Those whose windows the desktop knows come first (`isPlacedByWindows`), the last focused one
/// before the others; then those that must have windows elsewhere, as on a Wayland display, which only they themselves
/// know about; then the headless ones. Among these, the last started one comes before the others.
///
///     RecentBrowsers browsers(desktop);
///     driver(facts, {helperDirectory, [&] { return browsers.find(facts); }});
///
/// The desktop is asked only where there is a choice. Safe to use from any thread. A desktop that doesn't know
/// the order is no error: it is then that of the starts.
class RecentBrowsers {
public:
  explicit RecentBrowsers(std::shared_ptr<Desktop> desktop,
                          platform::RunningBrowsers running = platform::RunningBrowsers());

  /// Empty where none of the kind runs.
  [[nodiscard]] std::vector<platform::RunningBrowser> find(const platform::BrowserFacts& facts) const;

private:
  std::shared_ptr<Desktop> desktop_;
  platform::RunningBrowsers running_;
};

} // namespace tabwright::scripting
