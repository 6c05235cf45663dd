#pragma once

#include "devtools/Connection.h"
#include "devtools/Session.h"
#include "platform/linux/ProcessExit.h"
#include "scripting/driver/BrowserCommand.h"
#include "scripting/driver/BrowserView.h"

#include <boost/json/value.hpp>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tabwright::scripting {

class SeenBrowser;

/// The way to one connected browser, and all that depends on it: the debugging port speaks the protocol, the helper is
/// reached through its relay. Windows and tabs are seen alike by both, through a BrowserView.
///
///     std::unique_ptr<BrowserRoad> road = …;
///     SeenBrowser seen(…, [&](auto onChange) { return road->makeView(onChange, limits); });
///     road->use(seen);
///
/// Throws DriverFailure and DevToolsFailure. Safe to use from any thread once it has been given what it uses.
class BrowserRoad {
public:
  virtual ~BrowserRoad() = default;

  /// As users are told of it: “debugging port”, “helper”.
  [[nodiscard]] virtual std::string_view name() const = 0;
  /// False once the connection is lost, and for ever then.
  [[nodiscard]] virtual bool isOpen() const = 0;
  /// By what the helper calls the profile that it is in; empty where the road leads to all profiles of the browser.
  [[nodiscard]] virtual std::string profileMark() const { return {}; }
  /// False where the user has switched scripts in pages off for the road.
  [[nodiscard]] virtual bool runsScripts() const { return true; }
  /// The messages so far, for benchmarks.
  [[nodiscard]] virtual devtools::Traffic traffic() const = 0;

  /// The view of the browser's windows and tabs; called once, before all that follows. `onChange` is called from any
  /// thread, and only by a view that reports changes.
  virtual std::unique_ptr<BrowserView> makeView(std::function<void()> onChange, const CallLimits& limits) = 0;
  /// The place where tabs are found; it outlives the road's use.
  virtual void use(SeenBrowser& seen) = 0;

  /// Waits for an answer where there was none lately: commands are given only to a browser that answers, since one that
  /// is frozen would carry them out when it goes on.
  virtual void requireAnswer(const CallLimits& limits) = 0;

  /// The addresses to which pages are on their way that the browser no longer tells, by target. Asks nobody.
  [[nodiscard]] virtual std::unordered_map<std::string, std::string> destinations() = 0;
  /// Waits, for some seconds, until the pages that other runs have sent elsewhere have arrived. True when the browser
  /// is to be looked at anew.
  virtual bool settleOthers(const CallLimits& limits) = 0;

  /// Evaluates in the tab's page once it is where its navigations lead; nothing when it doesn't come, of which the
  /// run's user gets notice. `longest` bounds the evaluation itself.
  virtual std::optional<devtools::Evaluation> evaluate(TabID tab, const std::string& code, const CallLimits& limits,
                                                       std::optional<std::chrono::seconds> longest) = 0;

  /// Carries out a command, and returns when the change is made. BrowserCommand.h says what each of them does and
  /// yields. Addresses of code are none of its.
  virtual std::int64_t perform(const RoadCommand& command, const CallLimits& limits) = 0;
  /// Closes a window of developer tools. False where the window is none, or the road has no way to.
  virtual bool closeDeveloperTools(WindowID window, const CallLimits& limits) = 0;
};

/// Throws DriverFailure, `timedOut` or `stopped`, for a browser that was told to end and hasn't.
void requireEnded(platform::ProcessExit exit);

} // namespace tabwright::scripting
