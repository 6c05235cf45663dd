#include "scripting/driver/DevToolsDriver.h"

#include "platform/Logger.h"
#include "scripting/driver/BrowserLink.h"

#include <chrono>
#include <utility>

// Every call takes the link to the browser, making it first where there is none, and translates what goes wrong on the
// way into the driver's own faults: here and nowhere else.

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using namespace std::chrono_literals;

namespace {

const platform::Logger log("DevToolsDriver");

DriverFailure translated(const DevToolsFailure& failure, const std::string& subject) {
  switch (failure.kind()) {
  case DevToolsFault::unreachable:
    return platform::failure(DriverFault::unreachable, failure.detail());
  case DevToolsFault::lost:
    return platform::failure(DriverFault::lost, failure.detail());
  case DevToolsFault::notAnswering:
    return platform::failure(DriverFault::notAnswering, failure.detail());
  case DevToolsFault::refused:
    return platform::failure(DriverFault::refused, failure.detail());
  case DevToolsFault::timedOut:
    return platform::failure(DriverFault::timedOut, failure.detail());
  case DevToolsFault::stopped:
    return platform::failure(DriverFault::stopped);
  case DevToolsFault::targetGone:
    return platform::failure(DriverFault::tabClosed, subject);
  case DevToolsFault::targetCrashed:
    return platform::failure(DriverFault::tabCrashed, subject);
  case DevToolsFault::dialogOpen:
    return platform::failure(DriverFault::dialogOpen, failure.detail());
  }
  return platform::failure(DriverFault::refused, failure.detail());
}

/// One that can't tell now is no reason to fail: another may be meant.
double lastFocus(BrowserLink& link, const CallLimits& limits) {
  try {
    return link.lastFocus(platform::boundedBy(limits, 2s));
  } catch (const platform::Failure& failure) {
    log.debug("The last focus of process {} can't be told: {}", link.browser().process, failure.errorDescription());
    return 0;
  }
}

} // namespace

DevToolsDriver::DevToolsDriver(const platform::BrowserFacts& facts, DevToolsDriverParts parts)
    : facts_(facts), parts_(std::move(parts)) {}

DevToolsDriver::~DevToolsDriver() = default;

// ---------------------------------------------------------------------------------------------------------- the link

std::shared_ptr<BrowserLink> DevToolsDriver::currentLink() {
  const std::lock_guard lock(mutex_);
  if (link_ && !link_->isOpen())
    link_.reset();
  return link_;
}

/// Whether a call comes after a pause. The calls of one run stay with one browser, but between runs the user may have
/// gone on to another.
bool DevToolsDriver::beginsAnew() {
  const std::lock_guard lock(mutex_);
  const auto now = std::chrono::steady_clock::now();
  return now - std::exchange(called_, now) >= parts_.pauseBetweenRuns;
}

std::shared_ptr<BrowserLink> DevToolsDriver::requireLink(const CallLimits& callLimits) {
  const bool looksAgain = beginsAnew();
  if (std::shared_ptr<BrowserLink> link = currentLink(); link && !looksAgain)
    return link;
  const CallLimits limits = platform::boundedBy(callLimits, 30s);
  const devtools::Turn::Holder holder = connecting_.take("the browser is being connected", limits);
  std::shared_ptr<BrowserLink> present = currentLink();
  if (present && !looksAgain)
    return present;
  std::shared_ptr<BrowserLink> link;
  try {
    link = connect(limits);
  } catch (const platform::Failure& failure) {
    if (!present || !present->isOpen())
      throw;
    log.error("Which browser is meant can't be told, so the last one counts: {}", failure.errorDescription());
    return present;
  }
  const std::lock_guard lock(mutex_);
  link_ = link;
  return link;
}

std::shared_ptr<BrowserLink> DevToolsDriver::connect(const CallLimits& limits) {
  const std::vector<platform::RunningBrowser> browsers = parts_.findRunning();
  if (browsers.empty())
    throw platform::failure(DriverFault::notRunning, std::string(facts_.name));
  std::shared_ptr<BrowserLink> chosen;
  std::optional<DevToolsFailure> unreachable;
  for (const platform::RunningBrowser& browser : browsers) {
    const bool isOrdered = browser.isPlacedByWindows || browser.isHeadless;
    if (chosen && isOrdered)
      continue;
    try {
      const std::shared_ptr<BrowserLink> link = tryLink(browser, chosen ? platform::boundedBy(limits, 5s) : limits);
      if (link && isOrdered)
        return link;
      if (link && (!chosen || lastFocus(*link, limits) > lastFocus(*chosen, limits)))
        chosen = link;
    } catch (const DevToolsFailure& failure) {
      if (failure.kind() == DevToolsFault::unreachable)
        unreachable = failure;
      else if (!chosen)
        throw;
      log.debug("Process {} is left out: {}", browser.process, failure.errorDescription());
    }
  }
  if (!chosen && unreachable)
    throw platform::failure(DriverFault::unreachable, unreachable->detail());
  if (!chosen)
    throw platform::failure(DriverFault::notAccepting, std::string(facts_.name));
  return chosen;
}

/// Null when the browser takes no connections. Throws DevToolsFailure; `unreachable` when it says that it does, but
/// what it says is wrong.
std::shared_ptr<BrowserLink> DevToolsDriver::tryLink(const platform::RunningBrowser& browser,
                                                     const CallLimits& limits) {
  std::shared_ptr<BrowserLink> present = currentLink();
  if (present && present->browser().process == browser.process && present->browser().startTime == browser.startTime)
    return present;
  const auto endpoint = parts_.discovery.endpoint(browser.profileDirectory, browser.process, browser.owner);
  if (!endpoint) {
    log.debug("Process {} does not accept remote debugging: {}", browser.process, endpoint.error().detail);
    switch (endpoint.error().fault) {
    case devtools::DiscoveryFault::absent:
    case devtools::DiscoveryFault::notListening: // a file of an earlier run
      return nullptr;
    case devtools::DiscoveryFault::malformed:
    case devtools::DiscoveryFault::untrusted:
    case devtools::DiscoveryFault::unreadable:
    case devtools::DiscoveryFault::foreignListener:
      throw platform::failure(DevToolsFault::unreachable, endpoint.error().detail);
    }
  }
  return BrowserLink::open(browser, *endpoint, parts_.helperDirectory, parts_.looksAhead, limits);
}

template <class Call>
auto DevToolsDriver::withLink(const CallLimits& limits, const std::string& subject, Call&& call) {
  try {
    return call(*requireLink(limits));
  } catch (const DevToolsFailure& failure) {
    throw translated(failure, subject);
  }
}

/// Closing the last tab may end the browser before it answers: then, too, the tab is closed.
template <class Call>
void DevToolsDriver::close(const CallLimits& limits, const std::string& subject, Call&& call) {
  withLink(limits, subject, [&](BrowserLink& link) {
    try {
      call(link);
    } catch (const DevToolsFailure& failure) {
      if (failure.kind() != DevToolsFault::lost)
        throw;
    }
  });
}

bool DevToolsDriver::isRunning() {
  try {
    return currentLink() != nullptr || !parts_.findRunning().empty();
  } catch (const std::exception& error) {
    log.error("Running browsers can't be listed: {}", error.what());
    return false;
  }
}

devtools::Traffic DevToolsDriver::traffic() {
  const std::shared_ptr<BrowserLink> link = currentLink();
  return link ? link->traffic() : devtools::Traffic{};
}

// ---------------------------------------------------------------------------------------------------------- the calls

std::shared_ptr<const BrowserSnapshot> DevToolsDriver::snapshot(const CallLimits& limits) {
  return withLink(limits, "", [&](BrowserLink& link) { return link.snapshot(limits); });
}

boost::json::value DevToolsDriver::evaluate(TabID tab, const std::string& javascript, const CallLimits& limits) {
  return withLink(limits, std::to_string(tab),
                  [&](BrowserLink& link) { return link.evaluate(tab, javascript, limits); });
}

TabID DevToolsDriver::makeTab(WindowID window, std::optional<std::size_t> index, const std::string& url,
                              const CallLimits& limits) {
  return withLink(limits, "", [&](BrowserLink& link) { return link.makeTab(window, index, url, limits); });
}

WindowID DevToolsDriver::makeWindow(WindowMode mode, const std::string& url, const CallLimits& limits) {
  return withLink(limits, "", [&](BrowserLink& link) {
    return link.command(limits, [&](BrowserView& view) { return view.makeWindow(mode, url, limits); });
  });
}

void DevToolsDriver::closeTab(TabID tab, const CallLimits& limits) {
  close(limits, std::to_string(tab),
        [&](BrowserLink& link) { link.command(limits, [&](BrowserView& view) { view.closeTab(tab, limits); }); });
}

void DevToolsDriver::closeWindow(WindowID window, const CallLimits& limits) {
  close(limits, "", [&](BrowserLink& link) { link.closeWindow(window, limits); });
}

void DevToolsDriver::activateTab(TabID tab, const CallLimits& limits) {
  withLink(limits, std::to_string(tab), [&](BrowserLink& link) { link.activateTab(tab, limits); });
}

void DevToolsDriver::navigate(TabID tab, const std::string& url, const CallLimits& limits) {
  withLink(limits, std::to_string(tab), [&](BrowserLink& link) { link.navigate(tab, url, limits); });
}

void DevToolsDriver::goInHistory(TabID tab, History direction, const CallLimits& limits) {
  withLink(limits, std::to_string(tab), [&](BrowserLink& link) { link.goInHistory(tab, direction, limits); });
}

void DevToolsDriver::reload(TabID tab, const CallLimits& limits) {
  withLink(limits, std::to_string(tab), [&](BrowserLink& link) { link.reload(tab, limits); });
}

void DevToolsDriver::stopLoading(TabID tab, const CallLimits& limits) {
  withLink(limits, std::to_string(tab), [&](BrowserLink& link) { link.stopLoading(tab, limits); });
}

void DevToolsDriver::raiseWindow(WindowID window, const CallLimits& limits) {
  withLink(limits, "", [&](BrowserLink& link) {
    link.command(limits, [&](BrowserView& view) { view.raiseWindow(window, limits); });
  });
}

void DevToolsDriver::setBounds(WindowID window, WindowBounds bounds, const CallLimits& limits) {
  withLink(limits, "", [&](BrowserLink& link) { link.setBounds(window, bounds, limits); });
}

void DevToolsDriver::setShape(WindowID window, WindowShape shape, const CallLimits& limits) {
  withLink(limits, "", [&](BrowserLink& link) { link.setShape(window, shape, limits); });
}

void DevToolsDriver::setGivenName(WindowID window, const std::string& name, const CallLimits& limits) {
  withLink(limits, "", [&](BrowserLink& link) {
    link.command(limits, [&](BrowserView& view) { view.setGivenName(window, name, limits); });
  });
}

void DevToolsDriver::activate(const CallLimits& limits) {
  withLink(limits, "", [&](BrowserLink& link) {
    const std::shared_ptr<const BrowserSnapshot> seen = link.snapshot(limits);
    if (seen->windows.empty())
      return;
    link.command(limits, [&](BrowserView& view) { view.raiseWindow(seen->windows.front().id, limits); });
  });
}

void DevToolsDriver::quit(const CallLimits& limits) {
  withLink(limits, "", [&](BrowserLink& link) { link.quit(limits); });
}

} // namespace tabwright::scripting
