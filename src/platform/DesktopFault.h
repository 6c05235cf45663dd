#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::platform {

/// A desktop could not do what was asked. `detail` is what each case tells of it. A new case needs a row in the table
/// in DesktopFault.cpp, in the same place.
enum class DesktopFault {
  noWindowSystem,     ///< no X11 display is to be had. detail: why, as a clause
  wayland,            ///< the session's windows are on Wayland, which shows them to no other program
  noAccessibilityBus, ///< no program's menus and elements can be read. detail: why, as a clause
  notShown,           ///< an application shows no elements. detail: its name
  elementGone,        ///< an element, or its whole application, is there no more
  notAnswering,       ///< an application has let its time pass. detail: its process number
  elementRefused,     ///< an element can't do what it was asked to. detail: why, as a clause
  noWindow,           ///< detail: the process without windows
  windowGone,         ///< a window is there no more
  noKeyPresses,       ///< the display takes no simulated keys. detail: why, as a clause
  noSuchKey,          ///< the keyboard in use has no such key. detail: the key's name
  noAppearance,       ///< the desktop's setting for dark windows can't be read or changed. detail: why, as a clause
  untypable,          ///< no key can stand for a character. detail: the character, as U+0007
  cannotStart,        ///< detail: the application's name, a colon and why
  stopped,            ///< a stop was requested
};

/// Sentences for the user: what is missing, what works without it, and what to do. `detail` is what the case's comment
/// says, and has no effect on cases without one. UTF-8, in English, with a full stop.
[[nodiscard]] std::string errorDescription(DesktopFault fault, const std::string& detail);
/// Type "DesktopFault"; the name of the case; no number. Both are found by `CatalogueFailure`, so few call them
/// directly.
[[nodiscard]] FailureIdentity identity(DesktopFault fault);
/// The form in which a fault is thrown: `throw failure(DesktopFault::noWindowSystem, "DISPLAY isn't set");`.
using DesktopFailure = CatalogueFailure<DesktopFault>;

} // namespace tabwright::platform
