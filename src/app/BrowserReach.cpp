#include "app/BrowserReach.h"

#include "devtools/Discovery.h"
#include "devtools/PortLook.h"

#include <fmt/core.h>

namespace tabwright::app {

BrowserReach reachOf(const platform::RunningBrowser& browser, std::chrono::milliseconds patience) {
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

} // namespace tabwright::app
