// Every call takes the link to the browser, making it first where there is none, and translates what goes wrong on the
// way into the driver's own faults: here and nowhere else. The link is the one that the run's first call went to. For
// that first call all running browsers are looked for again where the user may have gone on to another; the first one
// whose place the desktop knows wins, and those whose place nobody outside knows are asked for their last focus.
#include "scripting/driver/ChromiumDriver.h"

#include "platform/Logger.h"
#include "scripting/driver/BrowserLink.h"
#include "scripting/driver/HelperRoad.h"
#include "scripting/driver/ProtocolRoad.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <utility>
#include <variant>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using namespace std::chrono_literals;

namespace {

const platform::Logger driverLog("ChromiumDriver");

/// `subject` is the id of the call's tab as text, empty without one: the protocol's failures don't name it.
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

/// The id of the command's tab as text; empty for a command on no tab.
std::string tabNamedBy(const BrowserCommand& command) {
  return std::visit(
      [](const auto& each) {
        if constexpr (requires { each.tab; })
          return std::to_string(each.tab);
        else
          return std::string();
      },
      command);
}

/// Closing the last tab may end the browser before it answers: then, too, the command is carried out.
bool closesSomething(const BrowserCommand& command) {
  return std::holds_alternative<CloseTab>(command) || std::holds_alternative<CloseWindow>(command);
}

// The browser starts a relay again within a second.
constexpr auto patienceWithRelays = 3s;
constexpr auto relayPause = 20ms;

bool isRunningStill(pid_t process) {
  return ::kill(process, 0) == 0 || errno == EPERM;
}

/// One that can't tell now is no reason to fail: another may be meant.
double lastFocus(BrowserLink& link, const CallLimits& limits) {
  try {
    return link.lastFocus(platform::boundedBy(limits, 2s));
  } catch (const platform::Failure& failure) {
    driverLog.debug("The last focus of process {} can't be told: {}", link.browser().process,
                    failure.errorDescription());
    return 0;
  }
}

} // namespace

ChromiumDriver::ChromiumDriver(const platform::BrowserFacts& facts, ChromiumDriverParts parts)
    : facts_(facts), parts_(std::move(parts)) {}

ChromiumDriver::~ChromiumDriver() = default;

// ---------------------------------------------------------------------------------------------------------- the link

std::shared_ptr<BrowserLink> ChromiumDriver::currentLink() {
  const platform::MutexLock lock(mutex_);
  if (link_ && !link_->isOpen())
    link_.reset();
  return link_;
}

/// The one that the run's earlier calls went to; null for its first call, and when that browser has ended.
std::shared_ptr<BrowserLink> ChromiumDriver::linkOfRun(const CallLimits& limits) {
  const platform::MutexLock lock(mutex_);
  // Runs that have ended took their notices with them.
  std::erase_if(runs_, [](const Run& run) { return run.notices.expired() || !run.link->isOpen(); });
  const auto run = std::ranges::find_if(runs_, [&](const Run& each) { return each.notices.lock() == limits.notices; });
  return run != runs_.end() ? run->link : nullptr;
}

void ChromiumDriver::keepForRun(const CallLimits& limits, const std::shared_ptr<BrowserLink>& link) {
  const platform::MutexLock lock(mutex_);
  if (limits.notices)
    runs_.push_back({limits.notices, link});
}

/// True when the user may have gone on to another browser: between runs where there are others, or where others may
/// have been started; and after a pause for calls of which it isn't known what run they belong to.
bool ChromiumDriver::beginsAnew(bool isNewRun) {
  const platform::MutexLock lock(mutex_);
  const auto now = std::chrono::steady_clock::now();
  const auto before = std::exchange(called_, now);
  return isNewRun ? foundSeveral_ || now - chosen_ >= parts_.pauseBetweenRuns : now - before >= parts_.pauseBetweenRuns;
}

std::shared_ptr<BrowserLink> ChromiumDriver::requireLink(const CallLimits& limits) {
  if (std::shared_ptr<BrowserLink> known = linkOfRun(limits))
    return known;
  std::shared_ptr<BrowserLink> link = chooseLink(limits);
  keepForRun(limits, link);
  return link;
}

std::shared_ptr<BrowserLink> ChromiumDriver::chooseLink(const CallLimits& callLimits) {
  const bool looksAgain = beginsAnew(callLimits.notices != nullptr);
  if (std::shared_ptr<BrowserLink> link = currentLink(); link && !looksAgain)
    return link;
  const CallLimits limits = platform::boundedBy(callLimits, 30s);
  // One thread connects. Those behind it find its link, unless they are to look again themselves.
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
    driverLog.error("Which browser is meant can't be told, so the last one counts: {}", failure.errorDescription());
    return present;
  }
  const platform::MutexLock lock(mutex_);
  link_ = link;
  return link;
}

std::shared_ptr<BrowserLink> ChromiumDriver::connect(const CallLimits& limits) {
  const std::vector<platform::RunningBrowser> browsers = parts_.findRunning();
  {
    const platform::MutexLock lock(mutex_);
    foundSeveral_ = browsers.size() > 1;
    chosen_ = std::chrono::steady_clock::now();
  }
  if (browsers.empty())
    throw platform::failure(DriverFault::notRunning, std::string(facts_.name));
  std::shared_ptr<BrowserLink> chosen;
  std::optional<DevToolsFailure> unreachable;
  for (const platform::RunningBrowser& browser : browsers) {
    // The desktop has placed it among the others, or it has no windows that a user could be in.
    const bool isOrdered = browser.isPlacedByWindows || browser.isHeadless;
    if (chosen && isOrdered)
      continue;
    try {
      // With one in hand the others are only compared with it, and may not keep the call for long.
      const std::shared_ptr<BrowserLink> link = tryLink(browser, chosen ? platform::boundedBy(limits, 5s) : limits);
      if (link && isOrdered)
        return link;
      if (link && (!chosen || lastFocus(*link, limits) > lastFocus(*chosen, limits)))
        chosen = link;
    } catch (const DevToolsFailure& failure) {
      // Another browser may do; this failure is told when none does.
      if (failure.kind() == DevToolsFault::unreachable)
        unreachable = failure;
      else if (!chosen)
        throw;
      driverLog.debug("Process {} is left out: {}", browser.process, failure.errorDescription());
    }
  }
  if (!chosen && unreachable)
    throw platform::failure(DriverFault::unreachable, unreachable->detail());
  if (!chosen && !parts_.profile.empty())
    throw platform::failure(DriverFault::profileNotReached, fmt::format("{}/{}", facts_.name, parts_.profile));
  if (!chosen)
    throw platform::failure(DriverFault::notAccepting, std::string(facts_.name));
  return chosen;
}

std::shared_ptr<BrowserLink> ChromiumDriver::tryLink(const platform::RunningBrowser& browser,
                                                     const CallLimits& limits) {
  std::shared_ptr<BrowserLink> byHelper = tryRelays(browser, limits);
  const bool isWhole = byHelper && byHelper->road().runsScripts();
  // A failure of the port counts only where there is nothing else.
  std::shared_ptr<BrowserLink> byPort;
  try {
    if (!isWhole && isMeant(browser, ""))
      byPort = tryPort(browser, limits);
  } catch (const DevToolsFailure& failure) {
    if (!byHelper)
      throw;
    driverLog.debug("The port of process {} is left out: {}", browser.process, failure.errorDescription());
  }
  // The browser starts a relay that was killed again, in a moment; one that has just been started listens in another.
  const CallLimits patience = limits.within(patienceWithRelays);
  while (!byHelper && !byPort && !patience.hasPassed() && (hadRelay(browser) || !parts_.findRelays(browser).empty())) {
    devtools::pause(relayPause, "the browser’s helper is coming back", limits);
    byHelper = tryRelays(browser, limits);
  }
  std::shared_ptr<BrowserLink> link = byPort ? std::move(byPort) : std::move(byHelper);
  if (link)
    driverLog.debug("{}, process {}, is reached by its {}.", facts_.name, browser.process, link->road().name());
  return link;
}

bool ChromiumDriver::isMeant(const platform::RunningBrowser& browser, const std::string& mark) const {
  return parts_.profile.empty() || (parts_.isProfile && parts_.isProfile(browser, mark, parts_.profile));
}

std::shared_ptr<BrowserLink> ChromiumDriver::tryRelays(const platform::RunningBrowser& browser,
                                                       const CallLimits& limits) {
  std::shared_ptr<BrowserLink> chosen;
  for (const RelayPlace& relay : parts_.findRelays(browser)) {
    try {
      const std::shared_ptr<BrowserLink> link = linkTo(browser, relay.relay, [&] {
        const auto findPort = [this, browser](const CallLimits& within) { return tryPort(browser, within); };
        return std::make_shared<BrowserLink>(browser, std::make_unique<HelperRoad>(browser, relay, findPort, limits),
                                             parts_.looksAhead, limits);
      });
      if (!isMeant(browser, link->road().profileMark()))
        continue;
      if (!chosen || lastFocus(*link, limits) > lastFocus(*chosen, limits))
        chosen = link;
    } catch (const DevToolsFailure& failure) {
      // A socket that its relay has left behind, or a helper that doesn't answer: another road may.
      if (failure.kind() == DevToolsFault::stopped)
        throw;
      driverLog.debug("The relay {} is left out: {}", relay.socket.string(), failure.errorDescription());
    }
  }
  return chosen;
}

/// Throws DevToolsFailure; `unreachable` when the browser says that it takes connections, but what it says is wrong.
std::shared_ptr<BrowserLink> ChromiumDriver::tryPort(const platform::RunningBrowser& browser,
                                                     const CallLimits& limits) {
  const auto open = [&]() -> std::shared_ptr<BrowserLink> {
    const auto endpoint = parts_.discovery.endpoint(browser.profileDirectory, browser.process, browser.owner);
    if (!endpoint) {
      driverLog.debug("Process {} does not accept remote debugging: {}", browser.process, endpoint.error().detail);
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
    return std::make_shared<BrowserLink>(
        browser, std::make_unique<ProtocolRoad>(browser, *endpoint, parts_.helperDirectory, limits), parts_.looksAhead,
        limits);
  };
  return linkTo(browser, 0, open);
}

std::shared_ptr<BrowserLink> ChromiumDriver::linkTo(const platform::RunningBrowser& browser, pid_t relay,
                                                    const std::function<std::shared_ptr<BrowserLink>()>& open) {
  // Process numbers are given again; the time of the start tells the next one apart.
  const auto isIt = [&](const KnownLink& known) {
    return known.browser == browser.process && known.startTime == browser.startTime && known.relay == relay;
  };
  {
    const platform::MutexLock lock(mutex_);
    const auto found = std::ranges::find_if(links_, isIt);
    if (found != links_.end() && found->link->isOpen())
      return found->link;
  }
  std::shared_ptr<BrowserLink> link = open();
  const platform::MutexLock lock(mutex_);
  std::erase_if(links_, [&](const KnownLink& known) { return isIt(known) || !isRunningStill(known.browser); });
  if (link)
    links_.push_back({browser.process, browser.startTime, relay, link});
  return link;
}

bool ChromiumDriver::hadRelay(const platform::RunningBrowser& browser) {
  const platform::MutexLock lock(mutex_);
  return std::ranges::any_of(links_, [&](const KnownLink& known) {
    return known.browser == browser.process && known.startTime == browser.startTime && known.relay != 0;
  });
}

template <class Call>
auto ChromiumDriver::withLink(const CallLimits& limits, const std::string& subject, Call&& call) {
  try {
    return call(*requireLink(limits));
  } catch (const DevToolsFailure& failure) {
    throw translated(failure, subject);
  } catch (const platform::JSONMismatch& mismatch) {
    throw platform::failure(DriverFault::malformedAnswer, mismatch.clause());
  }
}

bool ChromiumDriver::isRunning() {
  try {
    return currentLink() != nullptr || !parts_.findRunning().empty();
  } catch (const std::exception& error) {
    driverLog.error("Running browsers can't be listed: {}", error.what());
    return false;
  }
}

devtools::Traffic ChromiumDriver::traffic() {
  const std::shared_ptr<BrowserLink> link = currentLink();
  return link ? link->traffic() : devtools::Traffic{};
}

// ---------------------------------------------------------------------------------------------------------- the calls

std::shared_ptr<const BrowserSnapshot> ChromiumDriver::snapshot(const CallLimits& limits) {
  return withLink(limits, "", [&](BrowserLink& link) { return link.snapshot(limits); });
}

boost::json::value ChromiumDriver::evaluate(TabID tab, const std::string& javascript, const CallLimits& limits) {
  return withLink(limits, std::to_string(tab),
                  [&](BrowserLink& link) { return link.evaluate(tab, javascript, limits); });
}

std::int64_t ChromiumDriver::perform(const BrowserCommand& command, const CallLimits& limits) {
  return withLink(limits, tabNamedBy(command), [&](BrowserLink& link) {
    try {
      return link.perform(command, limits);
    } catch (const DevToolsFailure& failure) {
      if (failure.kind() != DevToolsFault::lost || !closesSomething(command))
        throw;
      return std::int64_t{0};
    }
  });
}

} // namespace tabwright::scripting
