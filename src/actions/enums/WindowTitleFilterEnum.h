#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The ways in which titles of windows are compared with the text of a filter. No action takes it as yet.
enum class WindowTitleFilterEnum { noFiltering, isExactly, contains, beginsWith, endsWith, regex };

inline constexpr auto windowTitleFilterEnum = intents::enumTable<WindowTitleFilterEnum>({
    {WindowTitleFilterEnum::noFiltering, "noFiltering"},
    {WindowTitleFilterEnum::isExactly, "isExactly"},
    {WindowTitleFilterEnum::contains, "contains"},
    {WindowTitleFilterEnum::beginsWith, "beginsWith"},
    {WindowTitleFilterEnum::endsWith, "endsWith"},
    {WindowTitleFilterEnum::regex, "regex"},
});

constexpr intents::EnumDeclaration enumDeclaration(WindowTitleFilterEnum) {
  return {"WindowTitleFilterEnum", intents::tables::enums, windowTitleFilterEnum};
}

} // namespace tabwright::actions
