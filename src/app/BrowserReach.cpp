#include "app/BrowserReach.h"

#include "devtools/Discovery.h"
#include "devtools/PortLook.h"
#include "platform/CallLimits.h"
#include "platform/Failure.h"
#include "scripting/driver/HelperRoad.h"
#include "scripting/driver/RelayConnection.h"
#include "shell/WindowText.h"

#include <fmt/core.h>

#include <future>
#include <utility>
#include <vector>

namespace tabwright::app {

BrowserReach portReachOf(const platform::RunningBrowser& browser, std::chrono::milliseconds patience) {
  using devtools::DiscoveryFault;
  using Kind = BrowserReach::Kind;
  const auto endpoint = devtools::Discovery().endpoint(browser.profileDirectory, browser.process, browser.owner);
  if (!endpoint) {
    const devtools::DiscoveryFailure& failure = endpoint.error();
    // A port file that nobody listens behind is left over from an earlier run.
    const bool isOff = failure.fault == DiscoveryFault::absent || failure.fault == DiscoveryFault::notListening;
    return {.kind = isOff ? Kind::debuggingOff : Kind::broken, .detail = failure.detail};
  }
  switch (devtools::lookAtPort(endpoint->port, patience)) {
  case devtools::PortAnswer::http:
    break;
  case devtools::PortAnswer::silence:
    return {.kind = Kind::silent, .detail = {}};
  case devtools::PortAnswer::other:
    return {.kind = Kind::broken, .detail = fmt::format("port {} answers no HTTP", endpoint->port)};
  }
  return {.kind = Kind::drivable, .detail = {}};
}

BrowserReach reachOf(const platform::RunningBrowser& browser, std::chrono::milliseconds patience) {
  BrowserReach port = portReachOf(browser, patience);
  if (port.kind == BrowserReach::Kind::drivable)
    return port;
  for (const scripting::RelayPlace& relay : scripting::findRelays(browser)) {
    try {
      const platform::CallLimits limits = platform::CallLimits{}.within(patience);
      const auto helper = scripting::RelayConnection::open(relay, browser, {}, limits);
      if (scripting::describeHelper(*helper, limits).mayRunScripts)
        return {.kind = BrowserReach::Kind::drivable, .detail = {}};
      port = {.kind = BrowserReach::Kind::scriptsForbidden, .detail = {}};
    } catch (const platform::Failure&) { // a helper that can't be spoken to is no road
    }
  }
  return port;
}

BrowserReaches reachOfRunning(std::chrono::milliseconds patience) {
  struct Look {
    const platform::BrowserFacts* facts;
    std::future<BrowserReach> reach;
  };
  std::vector<Look> looks;
  for (const platform::RunningBrowser& browser : platform::RunningBrowsers().findAll())
    looks.push_back({browser.facts, std::async(std::launch::async, reachOf, browser, patience)});
  BrowserReaches best;
  for (Look& look : looks) {
    BrowserReach reach = look.reach.get();
    const auto [place, isFirst] = best.try_emplace(look.facts, reach);
    if (!isFirst && reach.kind < place->second.kind)
      place->second = std::move(reach);
  }
  return best;
}

std::string sentenceOf(const platform::BrowserFacts& facts, const BrowserReach& reach,
                       const platform::StringCatalogue& texts) {
  const auto text = [&](std::string_view key, std::string_view detail) {
    return texts.localizedFormat(key, {facts.name, detail}, shell::windowTable);
  };
  switch (reach.kind) {
  case BrowserReach::Kind::drivable:
    return text("linux.browser.drivable", {});
  case BrowserReach::Kind::scriptsForbidden:
    return text("linux.browser.scriptsForbidden", facts.shortName);
  case BrowserReach::Kind::silent:
    return text("linux.browser.silent", {});
  case BrowserReach::Kind::broken:
    return text("linux.browser.broken", reach.detail);
  case BrowserReach::Kind::debuggingOff:
    break;
  }
  return text("linux.browser.debuggingOff", facts.shortName);
}

} // namespace tabwright::app
