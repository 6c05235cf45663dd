// A stable insertion sort by place, since `RunningBrowsers` already gives the last started browser first.
#include "scripting/systemevents/RecentBrowsers.h"

#include "platform/Failure.h"
#include "platform/Logger.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tabwright::scripting {

using platform::RunningBrowser;

namespace {

const platform::Logger browsersLog("RecentBrowsers");

} // namespace

RecentBrowsers::RecentBrowsers(std::shared_ptr<Desktop> desktop, platform::RunningBrowsers running)
    : desktop_(std::move(desktop)), running_(std::move(running)) {}

std::vector<RunningBrowser> RecentBrowsers::find(const platform::BrowserFacts& facts) const {
  std::vector<RunningBrowser> browsers = running_.find(facts);
  // With one there is no choice, and the desktop isn't asked.
  if (browsers.size() < 2)
    return browsers;
  std::vector<DesktopProcess> order;
  try {
    order = desktop_->processes();
  } catch (const platform::Failure& failure) {
    browsersLog.debug("The order of windows is unknown: {}", failure.errorDescription());
  }
  std::erase_if(order, [](const DesktopProcess& process) { return process.windows.empty(); });
  const auto placeAmongWindows = [&](const RunningBrowser& browser) {
    return std::ranges::find(order, browser.process, &DesktopProcess::pid) - order.begin();
  };
  for (RunningBrowser& browser : browsers)
    browser.isPlacedByWindows = placeAmongWindows(browser) < std::ssize(order);
  const auto place = [&](const RunningBrowser& browser) {
    return placeAmongWindows(browser) + (!browser.isPlacedByWindows && browser.isHeadless ? 1 : 0);
  };
  // Those in one place stay in the order of their starts.
  for (auto next = browsers.begin(); next != browsers.end(); ++next)
    std::rotate(std::ranges::upper_bound(browsers.begin(), next, place(*next), {}, place), next, next + 1);
  return browsers;
}

} // namespace tabwright::scripting
