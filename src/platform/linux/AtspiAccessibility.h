#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/AccessibilityBus.h"
#include "platform/linux/ProgramConnections.h"

#include <functional>
#include <string>

namespace tabwright::platform {

/// Elements over AT-SPI 2, spoken on the accessibility bus itself, and to the applications directly where they offer
/// it: the standard library for it ends the process where there is no bus, and asks one question at a time.
///
/// Connects when it is first asked something, and anew when the bus was lost. Safe to use from any thread: each call
/// has a connection of its own.
class AtspiAccessibility final : public Accessibility {
public:
  /// `display` names the X11 display that may tell the bus; empty: the one of DISPLAY.
  explicit AtspiAccessibility(std::string display = {});

  [[nodiscard]] std::vector<AccessibleApplication> applications(const CallLimits& limits) override;
  [[nodiscard]] std::optional<AccessibleElement> findApplication(pid_t process, const CallLimits& limits) override;
  [[nodiscard]] std::vector<AccessibleFacts> read(std::span<const AccessibleElement> elements,
                                                  const AccessibleParts& parts, const CallLimits& limits) override;
  void perform(const AccessibleElement& element, std::size_t action, const CallLimits& limits) override;
  void setText(const AccessibleElement& element, const std::string& text, const CallLimits& limits) override;
  void setValue(const AccessibleElement& element, double value, const CallLimits& limits) override;
  void focus(const AccessibleElement& element, const CallLimits& limits) override;

private:
  /// Asks on a connection and collects the answers. It may be called twice, the second time on another connection.
  using Work = std::function<BusConnection::Outcome(BusConnection&)>;

  /// Runs `work` on a connection to the bus and translates what goes wrong on it.
  void onBus(const CallLimits& limits, const Work& work);
  /// As `onBus`, on the quickest road to one application. Where the direct one breaks, the bus is asked all over.
  void onRoadTo(const std::string& application, const CallLimits& limits, const Work& work);
  /// Throws what it means that calls to an application weren't answered.
  void requireAnswered(BusConnection::Outcome outcome, const std::string& application);
  /// True when one of the application's windows is modal: it may still be at work on the action that has opened it.
  bool hasDialog(const std::string& application, const CallLimits& limits);
  /// The address at which an application listens itself; empty when it doesn't, or offers one that isn't a plain socket
  /// on this machine.
  std::string addressOf(const std::string& application, const CallLimits& limits);
  /// One call that changes something. `success`: its answer is a boolean, and false a refusal.
  enum class Reply { nothing, success };
  /// Throws DesktopFailure: `elementGone`, `elementRefused`, and what `onRoadTo` does.
  void operate(const AccessibleElement& element, const char* interface, const char* member, Reply reply,
               const BusConnection::Fill& arguments, const CallLimits& limits);

  /// Connections to the bus, on which all can be reached, and to programs that listen themselves.
  AccessibilityBus bus_;
  ProgramConnections programs_;
};

} // namespace tabwright::platform
