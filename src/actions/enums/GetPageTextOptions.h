#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The forms in which `GetPageText` gives a page.
enum class GetPageText_FormatOption {
  markdown, ///< GitHub Flavored Markdown
  plain,    ///< without marks and addresses
};

inline constexpr auto getPageTextFormatOptions = intents::enumTable<GetPageText_FormatOption>({
    {GetPageText_FormatOption::markdown, "markdown"},
    {GetPageText_FormatOption::plain, "plain"},
});

constexpr intents::EnumDeclaration enumDeclaration(GetPageText_FormatOption) {
  return {"GetPageText_FormatOption", intents::tables::standard, getPageTextFormatOptions};
}

} // namespace tabwright::actions
