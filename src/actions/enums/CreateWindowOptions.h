#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The kinds of windows that `CreateWindow` makes.
enum class CreateWindow_WindowTypeOption { standardWindow, privateWindow };

inline constexpr auto createWindowWindowTypeOptions = intents::enumTable<CreateWindow_WindowTypeOption>({
    {CreateWindow_WindowTypeOption::standardWindow, "standardWindow"},
    {CreateWindow_WindowTypeOption::privateWindow, "privateWindow"},
});

constexpr intents::EnumDeclaration enumDeclaration(CreateWindow_WindowTypeOption) {
  return {"CreateWindow_WindowTypeOption", intents::tables::standard, createWindowWindowTypeOptions};
}

} // namespace tabwright::actions
