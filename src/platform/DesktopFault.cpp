#include "platform/DesktopFault.h"

#include <fmt/core.h>

namespace tabwright::platform {

std::string errorDescription(DesktopFault fault, const std::string& detail) {
  switch (fault) {
  case DesktopFault::noWindowSystem:
    return fmt::format("There is no X11 window system here ({}), so no window can be shown, hidden or brought to the "
                       "front, and no key be pressed. Menus can be used, and so can everything in tabs and pages.",
                       detail);
  case DesktopFault::wayland:
    return "This session runs on Wayland, which lets no program bring another’s windows to the front or press keys in "
           "them. Menus can be used, and so can everything in tabs and pages. For the rest, log in to a session on "
           "X11 (“Xorg”).";
  case DesktopFault::noAccessibilityBus:
    return fmt::format("The desktop’s accessibility bus can’t be reached ({}), so no application’s menus and controls "
                       "can be read. Windows and keys can be used, and so can everything in tabs and pages. Install "
                       "at-spi2-core, and run Tabwright within the desktop’s session.",
                       detail);
  case DesktopFault::elementGone:
    return "The element, or its application, is there no more.";
  case DesktopFault::notAnswering:
    return fmt::format("{} hasn’t answered in time. It hangs, or is very busy.", detail);
  case DesktopFault::elementRefused:
    return fmt::format("The element can’t do that: {}.", detail);
  case DesktopFault::noWindow:
    return fmt::format("{} has no window that could be shown, hidden or brought to the front.", detail);
  case DesktopFault::windowGone:
    return "The window is there no more.";
  case DesktopFault::noKeyPresses:
    return fmt::format("This display takes no simulated keys: {}.", detail);
  case DesktopFault::noSuchKey:
    return fmt::format("The keyboard in use has no key {}.", detail);
  case DesktopFault::untypable:
    return fmt::format("No key can stand for the character {}. Nothing was typed.", detail);
  case DesktopFault::cannotStart:
    return fmt::format("Can’t start {}.", detail);
  case DesktopFault::stopped:
    return "Waiting for the desktop was stopped.";
  case DesktopFault::menusUnavailable:
    return "Reading menus is not available on this desktop yet.";
  case DesktopFault::keysUnavailable:
    return "Pressing keys is not available on this desktop yet.";
  }
  return "The desktop failed.";
}

FailureIdentity identity(DesktopFault fault) {
  const auto name = [fault] {
    switch (fault) {
    case DesktopFault::noWindowSystem:
      return "noWindowSystem";
    case DesktopFault::wayland:
      return "wayland";
    case DesktopFault::noAccessibilityBus:
      return "noAccessibilityBus";
    case DesktopFault::elementGone:
      return "elementGone";
    case DesktopFault::notAnswering:
      return "notAnswering";
    case DesktopFault::elementRefused:
      return "elementRefused";
    case DesktopFault::noWindow:
      return "noWindow";
    case DesktopFault::windowGone:
      return "windowGone";
    case DesktopFault::noKeyPresses:
      return "noKeyPresses";
    case DesktopFault::noSuchKey:
      return "noSuchKey";
    case DesktopFault::untypable:
      return "untypable";
    case DesktopFault::cannotStart:
      return "cannotStart";
    case DesktopFault::stopped:
      return "stopped";
    case DesktopFault::menusUnavailable:
      return "menusUnavailable";
    case DesktopFault::keysUnavailable:
      return "keysUnavailable";
    }
    return "";
  };
  return {"DesktopFault", name(), std::nullopt};
}

} // namespace tabwright::platform
