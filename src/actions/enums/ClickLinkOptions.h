#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The ways in which `ClickLink` compares the text of a link with the label.
enum class ClickLink_LinkSelectionOption {
  labelExact,      ///< the text is the label, white space around either left out
  labelContaining, ///< the text holds the label
};

inline constexpr auto clickLinkLinkSelectionOptions = intents::enumTable<ClickLink_LinkSelectionOption>({
    {ClickLink_LinkSelectionOption::labelExact, "labelExact"},
    {ClickLink_LinkSelectionOption::labelContaining, "labelContaining"},
});

constexpr intents::EnumDeclaration enumDeclaration(ClickLink_LinkSelectionOption) {
  return {"ClickLink_LinkSelectionOption", intents::tables::standard, clickLinkLinkSelectionOptions};
}

} // namespace tabwright::actions
