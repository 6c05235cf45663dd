#pragma once

#include "platform/Mutex.h"
#include "platform/linux/BusConnection.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace tabwright::platform {

/// The desktop's accessibility bus, on which applications offer their elements.
///
/// Its address comes from AT_SPI_BUS_ADDRESS, else from the session's bus, which starts it if need be, else from the
/// display. The first time, accessibility is switched on for the session (`org.a11y.Status.IsEnabled`), without which
/// Qt programs don't show themselves; it stays on, as after any other program that reads elements.
///
/// Connections are lent, so that callers on several threads don't wait for each other. Safe to use from any thread.
class AccessibilityBus {
public:
  /// `display` names the X11 display to ask; empty: the one of DISPLAY. Connects to nothing yet.
  explicit AccessibilityBus(std::string display = {});

  /// Lends a connection. Throws DesktopFailure: `noAccessibilityBus`, `stopped`. The caller alone uses it, and gives it
  /// back or drops it. One that the bus has left meanwhile isn't lent.
  [[nodiscard]] std::unique_ptr<BusConnection> take(const CallLimits& limits);
  /// Takes back a connection on which nothing is pending; one with answers to come is dropped by whoever has it. A few
  /// are kept; more are closed.
  void giveBack(std::unique_ptr<BusConnection> connection);

  /// True for two seconds after accessibility was switched on by us: applications are still joining. False when
  /// somebody else has switched it on, and while it was always on.
  [[nodiscard]] bool hasJustBeenSwitchedOn() const;

private:
  /// The first address that one of the places tells. Throws DesktopFailure: `noAccessibilityBus`, `stopped`.
  std::string findAddress(const CallLimits& limits);
  /// Asks the session's bus, and switches accessibility on. Throws `BusLost`, DesktopFailure `stopped`.
  std::string askSession(const CallLimits& limits);

  const std::string display_;
  mutable Mutex mutex_;
  std::string address_ GUARDED_BY(mutex_); ///< the last one that worked
  std::vector<std::unique_ptr<BusConnection>> idle_ GUARDED_BY(mutex_);
  std::chrono::steady_clock::time_point switchedOn_ GUARDED_BY(mutex_){};
};

} // namespace tabwright::platform
