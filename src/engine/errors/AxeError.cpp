// The English sentences are the raw values and the keys of their translations.
#include "engine/errors/AxeError.h"

#include "platform/StringCatalogue.h"

#include <array>
#include <cstddef>

namespace tabwright::engine {
namespace {

struct Row {
  AxeError error;
  std::string_view caseName;
  std::string_view rawValue;
};

using enum AxeError;
constexpr std::array<Row, 10> rows{{
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

consteval bool rowsStandInTheOrderOfTheCases() {
  for (std::size_t index = 0; index < rows.size(); ++index) {
    if (static_cast<std::size_t>(rows[index].error) != index)
      return false;
  }
  return true;
}
static_assert(rowsStandInTheOrderOfTheCases());

const Row& rowOf(AxeError error) {
  return rows.at(static_cast<std::size_t>(error));
}

} // namespace

std::string_view rawValue(AxeError error) {
  return rowOf(error).rawValue;
}

std::optional<AxeError> axeErrorWithRawValue(std::string_view rawValue) {
  for (const Row& row : rows) {
    if (row.rawValue == rawValue)
      return row.error;
  }
  return std::nullopt;
}

std::string errorDescription(AxeError error, const std::string&) {
  return platform::localized(rawValue(error));
}

platform::FailureIdentity identity(AxeError error) {
  return {"AxeError", std::string(rowOf(error).caseName), std::nullopt};
}

} // namespace tabwright::engine
