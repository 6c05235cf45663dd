#include "platform/DesktopFault.h"

#include "platform/FailureTable.h"

#include <fmt/core.h>

namespace tabwright::platform {
namespace {

using enum DesktopFault;
// Sentences are formats of the detail; each says what still works and what to do, where there is something.
constexpr FailureTable<DesktopFault, 15> table{
    "DesktopFault",
    {
        {noWindowSystem, "noWindowSystem",
         "There is no X11 window system here ({}), so no window can be shown, hidden or brought to the "
         "front, and no key be pressed. Menus can be used, and so can everything in tabs and pages."},
        {wayland, "wayland",
         "This session runs on Wayland, which lets no program bring another’s windows to the front or press keys in "
         "them. Menus can be used, and so can everything in tabs and pages. For the rest, log in to a session on "
         "X11 (“Xorg”)."},
        {noAccessibilityBus, "noAccessibilityBus",
         "The desktop’s accessibility bus can’t be reached ({}), so no application’s menus and controls "
         "can be read. Windows and keys can be used, and so can everything in tabs and pages. Install "
         "at-spi2-core, and run Tabwright within the desktop’s session."},
        {notShown, "notShown",
         "{} isn’t shown on the accessibility bus. Some programs, such as those of Qt, show their windows there only "
         "when "
         "they are started after accessibility was switched on, as it is now: start it again."},
        {elementGone, "elementGone", "The element, or its application, is there no more."},
        {notAnswering, "notAnswering", "{} hasn’t answered in time. It hangs, or is very busy."},
        {elementRefused, "elementRefused", "The element can’t do that: {}."},
        {noWindow, "noWindow", "{} has no window that could be shown, hidden or brought to the front."},
        {windowGone, "windowGone", "The window is there no more."},
        {noKeyPresses, "noKeyPresses", "This display takes no simulated keys: {}."},
        {noSuchKey, "noSuchKey", "The keyboard in use has no key {}."},
        {noAppearance, "noAppearance", "The desktop’s setting for dark windows can’t be reached: {}."},
        {untypable, "untypable", "No key can stand for the character {}. Nothing was typed."},
        {cannotStart, "cannotStart", "Can’t start {}."},
        {stopped, "stopped", "Waiting for the desktop was stopped."},
    }};

} // namespace

std::string errorDescription(DesktopFault fault, const std::string& detail) {
  return fmt::format(fmt::runtime(table[fault].sentence), detail);
}

FailureIdentity identity(DesktopFault fault) {
  return table.identity(fault);
}

} // namespace tabwright::platform
