#pragma once

#include "platform/Failure.h"

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::engine {

/// The failures of windows, menus and elements of the user interface.
enum class AxeError {
  appCouldNotBeActivated,
  appHasNoMenuBar,
  windowNotFound,
  windowsNotFound,
  menuItemNotFound,
  menuItemInactive,
  buttonNotFound,
  buttonInactive,
  elementNotFound,
  cantFullscreenFloatingWindows,
};

/// The English sentence, which is also the key of its translations.
[[nodiscard]] std::string_view rawValue(AxeError error);
/// The case of a sentence; nothing for a text that is none of them.
[[nodiscard]] std::optional<AxeError> axeErrorWithRawValue(std::string_view rawValue);

/// The sentence for the user. `detail` is not used.
[[nodiscard]] std::string errorDescription(AxeError error, const std::string& detail = {});
[[nodiscard]] platform::FailureIdentity identity(AxeError error);
using AxeFailure = platform::CatalogueFailure<AxeError>;

} // namespace tabwright::engine
