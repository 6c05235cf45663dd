#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::scripting {

/// The ways in which a desktop fails.
enum class DesktopFault {
  menusUnavailable, ///< menus can't be read or chosen from
  keysUnavailable,  ///< keys can't be pressed
  noWindowSystem,   ///< there are no windows to bring forward or hide
  noWindow,         ///< detail: the process without windows
};

/// Sentences for the user, which say what is missing.
[[nodiscard]] std::string errorDescription(DesktopFault fault, const std::string& detail);
[[nodiscard]] platform::FailureIdentity identity(DesktopFault fault);
using DesktopFailure = platform::CatalogueFailure<DesktopFault>;

} // namespace tabwright::scripting
