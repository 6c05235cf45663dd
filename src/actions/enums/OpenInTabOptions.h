#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// In which tab `OpenInTab` opens its URL.
enum class OpenInTab_TabSelectionOption {
  frontTab,            ///< the front tab of the front window
  newTabInFrontWindow, ///< a new tab of the front window
  newTabInWindow,      ///< a new tab of the window held by the parameter `targetWindow`
  specificTab,         ///< the tab held by the parameter `targetTab`
};

inline constexpr auto openInTabTabSelectionOptions = intents::enumTable<OpenInTab_TabSelectionOption>({
    {OpenInTab_TabSelectionOption::frontTab, "frontTab"},
    {OpenInTab_TabSelectionOption::newTabInFrontWindow, "newTabInFrontWindow"},
    {OpenInTab_TabSelectionOption::newTabInWindow, "newTabInWindow"},
    {OpenInTab_TabSelectionOption::specificTab, "specificTab"},
});

constexpr intents::EnumDeclaration enumDeclaration(OpenInTab_TabSelectionOption) {
  return {"OpenInTab_TabSelectionOption", intents::tables::standard, openInTabTabSelectionOptions};
}

} // namespace tabwright::actions
