// The shared theme: one row for each role.
#include "markdown/Theme.h"

namespace tabwright::markdown {
namespace {

using Role = Theme::Role;

constexpr Theme::ColourPair linkColour{.light = {0x0A, 0x58, 0xCA}, .dark = {0x6E, 0xA8, 0xFE}};
constexpr Theme::ColourPair subdued{.light = {0x5F, 0x66, 0x6E}, .dark = {0xA6, 0xAD, 0xB5}};
constexpr Theme::ColourPair codeGround{.light = {0xEF, 0xF0, 0xF2}, .dark = {0x2B, 0x2F, 0x34}};
constexpr Theme::ColourPair lines{.light = {0xC8, 0xCC, 0xD0}, .dark = {0x4A, 0x50, 0x57}};

constexpr Theme theme{
    .looks{{
        {.role = Role::heading1, .size = 170, .isBold = true},
        {.role = Role::heading2, .size = 140, .isBold = true},
        {.role = Role::heading3, .size = 120, .isBold = true},
        {.role = Role::heading4, .isBold = true},
        {.role = Role::heading5, .isBold = true, .colour = subdued},
        {.role = Role::heading6, .isItalic = true, .colour = subdued},
        {.role = Role::quote, .colour = subdued},
        {.role = Role::codeBlock, .size = 95, .isFixedPitch = true, .background = codeGround},
        {.role = Role::code, .size = 95, .isFixedPitch = true, .background = codeGround},
        {.role = Role::emphasis, .isItalic = true},
        {.role = Role::strong, .isBold = true},
        {.role = Role::strikethrough, .isStruckThrough = true},
        {.role = Role::link, .isUnderlined = true, .colour = linkColour},
        {.role = Role::image, .isItalic = true, .colour = subdued},
        {.role = Role::html, .isFixedPitch = true, .colour = subdued},
        {.role = Role::tableHeader, .isBold = true},
        {.role = Role::border, .colour = lines},
    }},
    .spacing{.paragraph = 8, .headingAbove = 14, .quoteIndentation = 16, .cellPadding = 4},
    .symbols{.unchecked = "☐", .checked = "☑"},
};

// `look` finds a role by its place, and a row in another's place would be seen by nobody.
constexpr bool isInOrder() {
  for (std::size_t row = 0; row < Theme::roleCount; ++row)
    if (theme.looks[row].role != static_cast<Role>(row))
      return false;
  return true;
}
static_assert(isInOrder(), "one row for each role, in the order of the roles");

} // namespace

const Theme markdownTheme = theme;

} // namespace tabwright::markdown
