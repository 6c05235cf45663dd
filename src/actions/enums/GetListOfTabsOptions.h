#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The selections that `GetListOfTabs` makes of the tabs found.
enum class GetListOfTabs_ListElementsOption { all, first, last, random };

inline constexpr auto getListOfTabsListElementsOptions = intents::enumTable<GetListOfTabs_ListElementsOption>({
    {GetListOfTabs_ListElementsOption::all, "all"},
    {GetListOfTabs_ListElementsOption::first, "first"},
    {GetListOfTabs_ListElementsOption::last, "last"},
    {GetListOfTabs_ListElementsOption::random, "random"},
});

constexpr intents::EnumDeclaration enumDeclaration(GetListOfTabs_ListElementsOption) {
  return {"GetListOfTabs_ListElementsOption", intents::tables::standard, getListOfTabsListElementsOptions};
}

/// The windows whose tabs `GetListOfTabs` looks at: private ones, the others, or both.
enum class GetListOfTabs_TabPrivacyOption { any, standard, incognito };

inline constexpr auto getListOfTabsTabPrivacyOptions = intents::enumTable<GetListOfTabs_TabPrivacyOption>({
    {GetListOfTabs_TabPrivacyOption::any, "any"},
    {GetListOfTabs_TabPrivacyOption::standard, "standard"},
    {GetListOfTabs_TabPrivacyOption::incognito, "incognito"},
});

constexpr intents::EnumDeclaration enumDeclaration(GetListOfTabs_TabPrivacyOption) {
  return {"GetListOfTabs_TabPrivacyOption", intents::tables::standard, getListOfTabsTabPrivacyOptions};
}

} // namespace tabwright::actions
