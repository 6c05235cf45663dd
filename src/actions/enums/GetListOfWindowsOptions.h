#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// Which of the windows found `GetListOfWindows` gives.
enum class GetListOfWindows_ListElementsOption { all, first, last, random };

inline constexpr auto getListOfWindowsListElementsOptions = intents::enumTable<GetListOfWindows_ListElementsOption>({
    {GetListOfWindows_ListElementsOption::all, "all"},
    {GetListOfWindows_ListElementsOption::first, "first"},
    {GetListOfWindows_ListElementsOption::last, "last"},
    {GetListOfWindows_ListElementsOption::random, "random"},
});

constexpr intents::EnumDeclaration enumDeclaration(GetListOfWindows_ListElementsOption) {
  return {"GetListOfWindows_ListElementsOption", intents::tables::standard, getListOfWindowsListElementsOptions};
}

/// Whether `GetListOfWindows` looks at private windows, at the others, or at both.
enum class GetListOfWindows_PrivacyFilterOption { any, standard, incognito };

inline constexpr auto getListOfWindowsPrivacyFilterOptions = intents::enumTable<GetListOfWindows_PrivacyFilterOption>({
    {GetListOfWindows_PrivacyFilterOption::any, "any"},
    {GetListOfWindows_PrivacyFilterOption::standard, "standard"},
    {GetListOfWindows_PrivacyFilterOption::incognito, "incognito"},
});

constexpr intents::EnumDeclaration enumDeclaration(GetListOfWindows_PrivacyFilterOption) {
  return {"GetListOfWindows_PrivacyFilterOption", intents::tables::standard, getListOfWindowsPrivacyFilterOptions};
}

/// Whether `GetListOfWindows` looks at windows that can be seen, at the others (such as minimized ones), or at both.
enum class GetListOfWindows_VisibilityFilterOption { any, visible, hidden };

inline constexpr auto getListOfWindowsVisibilityFilterOptions =
    intents::enumTable<GetListOfWindows_VisibilityFilterOption>({
        {GetListOfWindows_VisibilityFilterOption::any, "any"},
        {GetListOfWindows_VisibilityFilterOption::visible, "visible"},
        {GetListOfWindows_VisibilityFilterOption::hidden, "hidden"},
    });

constexpr intents::EnumDeclaration enumDeclaration(GetListOfWindows_VisibilityFilterOption) {
  return {"GetListOfWindows_VisibilityFilterOption", intents::tables::standard,
          getListOfWindowsVisibilityFilterOptions};
}

} // namespace tabwright::actions
