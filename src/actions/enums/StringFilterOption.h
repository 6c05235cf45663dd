#pragma once

#include "intents/EnumDeclaration.h"

#include <string_view>

namespace tabwright::actions {

/// The ways in which the list actions compare a text of an item with the text of a filter.
enum class StringFilterOption {
  ignore,                ///< every item passes
  contains,              ///< the item contains the filter text, in any case
  containsCaseSensitive, ///< the item contains the filter text as it stands
  equals,                ///< the item is the filter text
};

inline constexpr auto stringFilterOptions = intents::enumTable<StringFilterOption>({
    {StringFilterOption::ignore, "ignore"},
    {StringFilterOption::contains, "contains"},
    {StringFilterOption::containsCaseSensitive, "containsCaseSensitive"},
    {StringFilterOption::equals, "equals"},
});

constexpr intents::EnumDeclaration enumDeclaration(StringFilterOption) {
  return {"StringFilterOption", intents::tables::standard, stringFilterOptions};
}

/// True when `item` passes. Both are UTF-8; "in any case" means equal once both are in lower case by Unicode's rules,
/// independent of the language. Every text contains the empty one.
[[nodiscard]] bool passes(StringFilterOption filter, std::string_view item, std::string_view filterText);

} // namespace tabwright::actions
