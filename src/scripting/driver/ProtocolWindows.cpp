// The way back to the normal state and the change itself go out together, since most windows are normal already and the
// change then costs no round trip of its own. A change that came too early is refused, and both are sent again for as
// long as a second.
#include "scripting/driver/ProtocolWindows.h"

#include "devtools/Targets.h"
#include "devtools/Waiting.h"
#include "scripting/driver/DriverFault.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <chrono>
#include <string>

namespace tabwright::scripting {

using platform::JSONReader;
using namespace std::chrono_literals;

namespace {

/// Every change of a window's shape or place starts from its normal state: the browser takes no other way. On a desktop
/// the way back to normal takes the window manager a moment, during which the browser still refuses.
void changeWindow(devtools::Connection& connection, WindowID window, const boost::json::object& bounds,
                  const CallLimits& callLimits) {
  const CallLimits limits = platform::boundedBy(callLimits, connection.bounds().call);
  // With the pauses between them a second in all.
  constexpr int attempts = 50;
  for (int attempt = 1;; ++attempt) {
    const auto restored =
        connection.send("Browser.setWindowBounds", {{"windowId", window}, {"bounds", {{"windowState", "normal"}}}});
    const auto changed = bounds.empty()
                             ? restored
                             : connection.send("Browser.setWindowBounds", {{"windowId", window}, {"bounds", bounds}});
    devtools::PendingCall::Answer answer = restored->await(limits);
    if (answer && !bounds.empty())
      answer = changed->await(limits);
    if (answer)
      return;
    if (answer.error().message.find("not found") != std::string::npos)
      throw platform::failure(DriverFault::noSuchWindow, std::to_string(window));
    // The browser's words for a window that isn't normal yet.
    if (answer.error().message.find("normal") == std::string::npos || attempt >= attempts)
      throw platform::failure(DriverFault::refused, answer.error().message);
    devtools::pause(20ms, "the window to become normal", limits);
  }
}

} // namespace

void setBounds(devtools::Connection& connection, const SetBounds& command, const CallLimits& limits) {
  const WindowBounds& bounds = command.bounds;
  changeWindow(connection, command.window,
               {{"left", bounds.left}, {"top", bounds.top}, {"width", bounds.width}, {"height", bounds.height}},
               limits);
}

void setShape(devtools::Connection& connection, const SetShape& command, const CallLimits& limits) {
  switch (command.shape) {
  case WindowShape::normal:
    return changeWindow(connection, command.window, {}, limits);
  case WindowShape::minimized:
    return changeWindow(connection, command.window, {{"windowState", "minimized"}}, limits);
  case WindowShape::fullScreen:
    return changeWindow(connection, command.window, {{"windowState", "fullscreen"}}, limits);
  }
}

bool closeDeveloperTools(devtools::Connection& connection, WindowID window, const CallLimits& limits) {
  const boost::json::array everything{boost::json::object{}};
  for (const devtools::TargetInfo& target : devtools::listTargets(connection, everything, limits)) {
    // Asked for everything, the browser lists a page twice: also as the tab around it.
    if (target.type == "tab" || !target.url.starts_with("devtools:"))
      continue;
    const devtools::PendingCall::Answer answer =
        connection.send("Browser.getWindowForTarget", {{"targetId", target.id}})
            ->await(platform::boundedBy(limits, 30s));
    if (answer && JSONReader(*answer).require<WindowID>("windowId") == window) {
      connection.call("Target.closeTarget", {{"targetId", target.id}}, {}, limits);
      return true;
    }
  }
  return false;
}

} // namespace tabwright::scripting
