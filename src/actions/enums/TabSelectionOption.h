#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The tabs of a browser that an action can work on.
enum class TabSelectionOption {
  frontTab,    ///< the front tab of the front window of the target browser
  specificTab, ///< the tab held by the parameter `targetTab`
};

inline constexpr auto tabSelectionOptions = intents::enumTable<TabSelectionOption>({
    {TabSelectionOption::frontTab, "frontTab"},
    {TabSelectionOption::specificTab, "specificTab"},
});

constexpr intents::EnumDeclaration enumDeclaration(TabSelectionOption) {
  return {"TabSelectionOption", intents::tables::standard, tabSelectionOptions};
}

} // namespace tabwright::actions
