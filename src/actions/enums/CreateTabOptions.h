#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The places at which `CreateTab` makes its tab.
enum class CreateTab_WindowTypeOption {
  frontWindow,    ///< in the front window
  newWindow,      ///< in a window of its own
  specificWindow, ///< in the window held by the parameter `targetWindow`
};

inline constexpr auto createTabWindowTypeOptions = intents::enumTable<CreateTab_WindowTypeOption>({
    {CreateTab_WindowTypeOption::frontWindow, "frontWindow"},
    {CreateTab_WindowTypeOption::newWindow, "newWindow"},
    {CreateTab_WindowTypeOption::specificWindow, "specificWindow"},
});

constexpr intents::EnumDeclaration enumDeclaration(CreateTab_WindowTypeOption) {
  return {"CreateTab_WindowTypeOption", intents::tables::standard, createTabWindowTypeOptions};
}

} // namespace tabwright::actions
