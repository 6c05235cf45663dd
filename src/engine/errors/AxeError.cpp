// The English sentences are the raw values and the keys of their translations.
#include "engine/errors/AxeError.h"

#include "platform/FailureTable.h"
#include "platform/StringCatalogue.h"

namespace tabwright::engine {
namespace {

constexpr platform::FailureTable<AxeError, 10> axeErrors{
    "AxeError",
    {
        {AxeError::appCouldNotBeActivated, "appCouldNotBeActivated", "The app couldn't be activated or launched"},
        {AxeError::appHasNoMenuBar, "appHasNoMenuBar", "The app doesn't have a menu bar"},
        {AxeError::windowNotFound, "windowNotFound", "The requested window couldn't be found"},
        {AxeError::windowsNotFound, "windowsNotFound", "The app doesn't have any open windows"},
        {AxeError::menuItemNotFound, "menuItemNotFound", "The requested menu item couldn't be found"},
        {AxeError::menuItemInactive, "menuItemInactive", "The requested menu item is not active or enabled"},
        {AxeError::buttonNotFound, "buttonNotFound", "The requested button couldn't be found"},
        {AxeError::buttonInactive, "buttonInactive", "The requested button is not active or enabled"},
        {AxeError::elementNotFound, "elementNotFound", "The requested UI element couldn't be found"},
        {AxeError::cantFullscreenFloatingWindows, "cantFullscreenFloatingWindows",
         "Floating windows don't support fullscreen"},
    }};

} // namespace

std::string_view rawValue(AxeError error) {
  return axeErrors[error].sentence;
}

std::string errorDescription(AxeError error, const std::string&) {
  return platform::localized(rawValue(error));
}

platform::FailureIdentity identity(AxeError error) {
  return axeErrors.identity(error);
}

} // namespace tabwright::engine
