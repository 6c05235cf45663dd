// The address is looked for in this order: the one that worked last, the environment, the session's bus, the display's
// root window. All of it happens without the lock, since the session's bus may have to start the other one first; two
// threads that look at once both find it, and the last one's address is kept.
#include "platform/linux/AccessibilityBus.h"

#include "platform/Accessibility.h"
#include "platform/DesktopFault.h"
#include "platform/linux/X11Display.h"

#include <fmt/core.h>

#include <cstdlib>
#include <systemd/sd-bus.h>
#include <utility>

namespace tabwright::platform {

namespace {

constexpr std::size_t mostIdleBuses = 4;

/// The first call may have to start the bus.
constexpr auto longestSilence = Accessibility::longestArrival;

} // namespace

AccessibilityBus::AccessibilityBus(std::string display) : display_(std::move(display)) {}

std::string AccessibilityBus::askSession(const CallLimits& limits) {
  const auto session = BusConnection::toSession();
  constexpr const char* bus = "org.a11y.Bus";
  constexpr const char* path = "/org/a11y/bus";
  std::string address, reason;
  bool isOn = true;
  // Both questions leave before the first answer, which may have to wait for the service to be started.
  session->ask({bus, path, bus, "GetAddress"}, {}, [&](sd_bus_message* answer) {
    const char* text = nullptr;
    if (sd_bus_message_is_method_error(answer, nullptr) > 0)
      reason = sd_bus_message_get_error(answer)->message;
    else if (sd_bus_message_read(answer, "s", &text) > 0)
      address = text;
  });
  session->askProperty({bus, path, "org.a11y.Status", "IsEnabled"}, [&](sd_bus_message* answer) {
    int value = 1;
    // A bus that doesn't know the property has nothing to be switched on.
    isOn = sd_bus_message_read(answer, "v", "b", &value) < 0 || value != 0;
  });
  const auto collect = [&] {
    const BusConnection::Outcome outcome = session->collect(limits, longestSilence);
    if (outcome == BusConnection::Outcome::stopped)
      throw failure(DesktopFault::stopped);
    if (outcome == BusConnection::Outcome::silent)
      throw BusLost("the session’s bus doesn’t answer");
  };
  collect();
  if (address.empty())
    throw BusLost(reason.empty() ? "it tells no address" : reason);
  if (!isOn) {
    session->ask(
        {bus, path, "org.freedesktop.DBus.Properties", "Set"},
        [](sd_bus_message* call) { sd_bus_message_append(call, "ssv", "org.a11y.Status", "IsEnabled", "b", 1); },
        // A refusal isn't looked at: programs that don't need the switch can be read all the same.
        [](sd_bus_message*) {});
    collect();
    const MutexLock lock(mutex_);
    switchedOn_ = std::chrono::steady_clock::now();
  }
  return address;
}

std::string AccessibilityBus::findAddress(const CallLimits& limits) {
  if (const char* given = std::getenv("AT_SPI_BUS_ADDRESS"); given != nullptr && *given != '\0')
    return given;
  try {
    return askSession(limits);
  } catch (const BusLost& lost) {
    try {
      if (std::string told = X11Display(display_).rootText("AT_SPI_BUS"); !told.empty())
        return told;
    } catch (const DesktopFailure&) {
      // No display either: the session's bus is what is missed first.
    }
    throw failure(DesktopFault::noAccessibilityBus, lost.what());
  }
}

std::unique_ptr<BusConnection> AccessibilityBus::take(const CallLimits& limits) {
  std::string address;
  {
    const MutexLock lock(mutex_);
    while (!idle_.empty()) {
      auto connection = std::move(idle_.back());
      idle_.pop_back();
      if (connection->isAlive())
        return connection;
      // The bus may come back at another address.
      address_.clear();
    }
    address = address_;
  }
  if (address.empty())
    address = findAddress(limits);
  try {
    auto connection = BusConnection::to(address);
    const MutexLock lock(mutex_);
    address_ = address;
    return connection;
  } catch (const BusLost& lost) {
    const MutexLock lock(mutex_);
    address_.clear();
    throw failure(DesktopFault::noAccessibilityBus, lost.what());
  }
}

void AccessibilityBus::giveBack(std::unique_ptr<BusConnection> connection) {
  const MutexLock lock(mutex_);
  if (idle_.size() < mostIdleBuses)
    idle_.push_back(std::move(connection));
}

bool AccessibilityBus::hasJustBeenSwitchedOn() const {
  const MutexLock lock(mutex_);
  return std::chrono::steady_clock::now() - switchedOn_ < Accessibility::longestArrival;
}

} // namespace tabwright::platform
