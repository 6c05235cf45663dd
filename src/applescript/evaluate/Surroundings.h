#pragma once

#include "applescript/events/ApplicationDirectory.h"
#include "applescript/values/ForeignObject.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>

namespace tabwright::applescript {

/// The world as a running script meets it, all replaceable in tests. Its functions are called on the threads of runs,
/// from several at once; what it points to must outlive the Interpreter.
struct Surroundings {
  ApplicationDirectory* directory = nullptr;    ///< required
  const ObjectiveCBridge* objectiveC = nullptr; ///< null: `use framework` finds no classes
  /// Bundle identifier and name that `current application` and `me`'s own application answer to.
  std::string ownName = "Tabwright";

  /// Waits, at most until a stop is requested; that is no error of its own. Default: real time.
  std::function<void(std::chrono::nanoseconds, std::stop_token)> sleep;
  /// Seconds since 2001-01-01 00:00:00 on the local wall clock. Default: the system's.
  std::function<double()> now;
  /// A number in [0, 1). Default: a generator seeded by the system.
  std::function<double()> random;
  /// Takes what the script's `log` writes. Default: drops it.
  std::function<void(std::string_view)> log;
};

/// Bounds of a run: beyond them the script ends with an error of its own, never with a crash. All but the steps are
/// errors that a `try` can catch.
struct RunLimits {
  std::size_t handlerDepth = 1000;   ///< error −2706
  std::size_t valueBytes = 1u << 28; ///< one text or list grown beyond this: error −108
  std::chrono::nanoseconds eventTimeout =
      std::chrono::seconds(120); ///< error −1712, unless `with timeout` says otherwise
  std::size_t steps = 0; ///< statements and expressions evaluated in all; beyond them −128. 0: as many as it takes
};

} // namespace tabwright::applescript
