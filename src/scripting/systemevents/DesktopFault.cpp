#include "scripting/systemevents/DesktopFault.h"

#include <fmt/core.h>

namespace tabwright::scripting {

std::string errorDescription(DesktopFault fault, const std::string& detail) {
  switch (fault) {
  case DesktopFault::menusUnavailable:
    return "Reading menus is not available on this desktop yet.";
  case DesktopFault::keysUnavailable:
    return "Pressing keys is not available on this desktop yet.";
  case DesktopFault::noWindowSystem:
    return "There is no window system here, so no application can be shown, hidden or brought to the front.";
  case DesktopFault::noWindow:
    return fmt::format("{} has no window that could be shown, hidden or brought to the front.", detail);
  }
  return "The desktop failed.";
}

platform::FailureIdentity identity(DesktopFault fault) {
  switch (fault) {
  case DesktopFault::menusUnavailable:
    return {"DesktopFault", "menusUnavailable", std::nullopt};
  case DesktopFault::keysUnavailable:
    return {"DesktopFault", "keysUnavailable", std::nullopt};
  case DesktopFault::noWindowSystem:
    return {"DesktopFault", "noWindowSystem", std::nullopt};
  case DesktopFault::noWindow:
    return {"DesktopFault", "noWindow", std::nullopt};
  }
  return {"DesktopFault", "", std::nullopt};
}

} // namespace tabwright::scripting
