#pragma once

#include "platform/StringCatalogue.h"
#include "platform/linux/RunningBrowsers.h"

#include <chrono>
#include <map>
#include <string>

namespace tabwright::app {

/// The ways in which a running browser can be reached now or not, the best first: of several browsers of one kind the
/// least value counts.
struct BrowserReach {
  enum class Kind {
    drivable,         ///< remote debugging is on, and it answers; or the helper in it does
    scriptsForbidden, ///< the helper in it answers, but may not run scripts in pages
    silent,           ///< remote debugging is on, but nothing is answered: the browser is frozen, or very busy
    broken,           ///< it says that remote debugging is on, but what it says is wrong
    debuggingOff,     ///< remote debugging is off, and no helper is reached
  };
  Kind kind = Kind::debuggingOff;
  std::string detail; ///< of what is broken
};

/// By its debugging port alone: reads the browser's own files and asks at its port. Opens no session, so the browser
/// asks its user nothing. Blocks, for the question at the port no longer than `patience`; a browser that can't be
/// reached is an answer, no failure. From any thread.
///
///     if (portReachOf(browser, std::chrono::milliseconds(800)).kind == BrowserReach::Kind::drivable) …
[[nodiscard]] BrowserReach portReachOf(const platform::RunningBrowser& browser, std::chrono::milliseconds patience);
/// By its port, else by the helper in one of its profiles, who have `patience` each. Likewise otherwise.
[[nodiscard]] BrowserReach reachOf(const platform::RunningBrowser& browser, std::chrono::milliseconds patience);

/// By the row of the browser; of several that run of one kind the one that is reached best counts.
using BrowserReaches = std::map<const platform::BrowserFacts*, BrowserReach>;

/// All browsers that run, asked at the same time.
[[nodiscard]] BrowserReaches reachOfRunning(std::chrono::milliseconds patience);

/// A sentence for the user: how the browser is, and what to do about it; in the language of `texts`.
[[nodiscard]] std::string sentenceOf(const platform::BrowserFacts& facts, const BrowserReach& reach,
                                     const platform::StringCatalogue& texts);

} // namespace tabwright::app
