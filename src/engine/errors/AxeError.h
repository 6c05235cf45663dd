#pragma once

#include "platform/Failure.h"

#include <string>
#include <string_view>

namespace tabwright::engine {

/// The failures of windows, menus and elements of the user interface.
/// Those of applications and menus are thrown by actions; the others belong to the catalogue alone.
enum class AxeError {
  /// The application isn't there, can't be started, or shows no window in time.
  appCouldNotBeActivated,
  /// None of its windows has a menu bar, or the menus can't be read; the cause tells which.
  appHasNoMenuBar,
  windowNotFound,
  windowsNotFound,
  menuItemNotFound,
  /// The item is there and disabled.
  menuItemInactive,
  buttonNotFound,
  buttonInactive,
  elementNotFound,
  cantFullscreenFloatingWindows,
};

/// The English sentence, which is also the key of its translations.
[[nodiscard]] std::string_view rawValue(AxeError error);

/// The sentence for the user. `detail` is not used.
[[nodiscard]] std::string errorDescription(AxeError error, const std::string& detail = {});
[[nodiscard]] platform::FailureIdentity identity(AxeError error);
/// As it is thrown, and as searches return it.
using AxeFailure = platform::CatalogueFailure<AxeError>;

} // namespace tabwright::engine
