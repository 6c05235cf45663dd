#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::platform {

/// A desktop could not do what was asked. `detail` is what each case tells of it.
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

/// Sentences for the user: what is missing, what works without it, and what to do.
[[nodiscard]] std::string errorDescription(DesktopFault fault, const std::string& detail);
[[nodiscard]] FailureIdentity identity(DesktopFault fault);
using DesktopFailure = CatalogueFailure<DesktopFault>;

} // namespace tabwright::platform
