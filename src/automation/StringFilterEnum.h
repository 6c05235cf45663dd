#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::automation {

/// The ways in which the menu actions compare the title of a menu item with the text of a filter.
enum class StringFilterEnum {
  isExactly,  ///< the title is the text
  contains,   ///< the title holds the text
  beginsWith, ///< the title begins with the text
  endsWith,   ///< the title ends with the text
  regex,      ///< the text is a regular expression that matches somewhere in the title
};

inline constexpr auto stringFilterEnum = intents::enumTable<StringFilterEnum>({
    {StringFilterEnum::isExactly, "isExactly"},
    {StringFilterEnum::contains, "contains"},
    {StringFilterEnum::beginsWith, "beginsWith"},
    {StringFilterEnum::endsWith, "endsWith"},
    {StringFilterEnum::regex, "regex"},
});

constexpr intents::EnumDeclaration enumDeclaration(StringFilterEnum) {
  return {"StringFilterEnum", intents::tables::enums, stringFilterEnum};
}

} // namespace tabwright::automation
