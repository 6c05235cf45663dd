#pragma once

#include "scripting/driver/BrowserCommand.h"
#include "scripting/driver/BrowserState.h"
#include "scripting/driver/DriverFault.h"

#include <boost/json/value.hpp>

#include <cstdint>
#include <memory>
#include <string>

namespace tabwright::scripting {

/// One real browser, reached by whatever way there is to it. The way (a debugging protocol, a helper in the browser)
/// and the words of a scripting dictionary know nothing of each other; this interface is where they meet.
///
///     const TabID tab = driver.perform(MakeTab{.window = window, .url = "https://example.com/"}, limits);
///     const boost::json::value title = driver.evaluate(tab, "document.title", limits);
///
/// All calls block, may come from several threads at once, and throw DriverFailure. Every call ends by its deadline,
/// and at once when the browser is lost, its tab crashes or closes, or a dialog opens in it: nothing waits for ever.
class BrowserDriver {
public:
  virtual ~BrowserDriver() = default;

  /// True when the browser runs now. Connects to nothing, throws nothing.
  [[nodiscard]] virtual bool isRunning() = 0;

  /// The windows and tabs as they are. Costs at most one round trip, and none when nothing can have changed since the
  /// last one: no change was reported by the browser, and no command or evaluation of ours has run.
  virtual std::shared_ptr<const BrowserSnapshot> snapshot(const CallLimits& limits) = 0;

  /// Evaluates JavaScript in the page's own world, awaiting a promise, and yields its value. `undefined`, `null`,
  /// and a thrown exception give JSON null; what JSON can't say (functions, symbols) gives null; non-finite numbers
  /// give null. Texts of any length come whole.
  virtual boost::json::value evaluate(TabID tab, const std::string& javascript, const CallLimits& limits) = 0;

  /// Carries out a command. Yields its number, for a command that has one; else 0. Returns when the change is made: a
  /// snapshot taken later shows it.
  virtual std::int64_t perform(const BrowserCommand& command, const CallLimits& limits) = 0;
};

} // namespace tabwright::scripting
