#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The selections that `GetListOfWindows` makes of the windows found.
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

/// The windows that `GetListOfWindows` looks at: private ones, the others, or both.
enum class GetListOfWindows_PrivacyFilterOption { any, standard, incognito };

inline constexpr auto getListOfWindowsPrivacyFilterOptions = intents::enumTable<GetListOfWindows_PrivacyFilterOption>({
    {GetListOfWindows_PrivacyFilterOption::any, "any"},
    {GetListOfWindows_PrivacyFilterOption::standard, "standard"},
    {GetListOfWindows_PrivacyFilterOption::incognito, "incognito"},
});

constexpr intents::EnumDeclaration enumDeclaration(GetListOfWindows_PrivacyFilterOption) {
  return {"GetListOfWindows_PrivacyFilterOption", intents::tables::standard, getListOfWindowsPrivacyFilterOptions};
}

/// The windows that `GetListOfWindows` looks at: those that can be seen, the others (such as minimized ones), or both.
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
