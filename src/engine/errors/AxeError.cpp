// The English sentences are the raw values and the keys of their translations.
#include "engine/errors/AxeError.h"

#include "platform/FailureTable.h"
#include "platform/StringCatalogue.h"

namespace tabwright::engine {
namespace {

using enum AxeError;
constexpr platform::FailureTable<AxeError, 10> axeErrors{
    "AxeError",
    {
        {appCouldNotBeActivated, "appCouldNotBeActivated", "The app couldn't be activated or launched"},
        {appHasNoMenuBar, "appHasNoMenuBar", "The app doesn't have a menu bar"},
        {windowNotFound, "windowNotFound", "The requested window couldn't be found"},
        {windowsNotFound, "windowsNotFound", "The app doesn't have any open windows"},
        {menuItemNotFound, "menuItemNotFound", "The requested menu item couldn't be found"},
        {menuItemInactive, "menuItemInactive", "The requested menu item is not active or enabled"},
        {buttonNotFound, "buttonNotFound", "The requested button couldn't be found"},
        {buttonInactive, "buttonInactive", "The requested button is not active or enabled"},
        {elementNotFound, "elementNotFound", "The requested UI element couldn't be found"},
        {cantFullscreenFloatingWindows, "cantFullscreenFloatingWindows", "Floating windows don't support fullscreen"},
    }};

} // namespace

std::string_view rawValue(AxeError error) {
  return axeErrors[error].sentence;
}

std::optional<AxeError> axeErrorWithRawValue(std::string_view rawValue) {
  for (const auto& row : axeErrors.rows()) {
    if (row.sentence == rawValue)
      return row.kind;
  }
  return std::nullopt;
}

std::string errorDescription(AxeError error, const std::string&) {
  return platform::localized(rawValue(error));
}

platform::FailureIdentity identity(AxeError error) {
  return axeErrors.identity(error);
}

} // namespace tabwright::engine
