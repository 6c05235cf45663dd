// The shared theme: one row for each role. Colours for terminals stay few, as palettes differ in what can be read.
#include "markdown/Theme.h"

namespace tabwright::markdown {
namespace {

using Role = Theme::Role;
using Colour = Theme::TerminalColour;

constexpr Theme::ColourPair linkColour{.light = {0x0A, 0x58, 0xCA}, .dark = {0x6E, 0xA8, 0xFE}};
constexpr Theme::ColourPair subdued{.light = {0x5F, 0x66, 0x6E}, .dark = {0xA6, 0xAD, 0xB5}};
constexpr Theme::ColourPair codeGround{.light = {0xEF, 0xF0, 0xF2}, .dark = {0x2B, 0x2F, 0x34}};
constexpr Theme::ColourPair lines{.light = {0xC8, 0xCC, 0xD0}, .dark = {0x4A, 0x50, 0x57}};

constexpr Theme theme{
    .looks{{
        {Role::heading1, {.size = 170, .isBold = true}, {.isBold = true, .isUnderlined = true}},
        {Role::heading2, {.size = 140, .isBold = true}, {.isBold = true, .isUnderlined = true}},
        {Role::heading3, {.size = 120, .isBold = true}, {.isBold = true}},
        {Role::heading4, {.isBold = true}, {.isBold = true}},
        {Role::heading5, {.isBold = true, .colour = subdued}, {.isBold = true, .isItalic = true}},
        {Role::heading6, {.isItalic = true, .colour = subdued}, {.isItalic = true}},
        {Role::quote, {.colour = subdued}, {}},
        {Role::codeBlock, {.size = 95, .isFixedPitch = true, .background = codeGround}, {.colour = Colour::cyan}},
        {Role::code,
         {.size = 95, .isFixedPitch = true, .background = codeGround},
         {.colour = Colour::cyan, .plainMark = "`"}},
        {Role::emphasis, {.isItalic = true}, {.isItalic = true, .plainMark = "*"}},
        {Role::strong, {.isBold = true}, {.isBold = true, .plainMark = "**"}},
        {Role::strikethrough, {.isStruckThrough = true}, {.isStruckThrough = true, .plainMark = "~~"}},
        {Role::link, {.isUnderlined = true, .colour = linkColour}, {.isUnderlined = true, .colour = Colour::blue}},
        {Role::image, {.isItalic = true, .colour = subdued}, {.isDim = true, .isItalic = true}},
        {Role::html, {.isFixedPitch = true, .colour = subdued}, {.isDim = true}},
        {Role::listMarker, {}, {.isDim = true}},
        {Role::tableHeader, {.isBold = true}, {.isBold = true}},
        {Role::border, {.colour = lines}, {.isDim = true}},
    }},
    .spacing{.paragraph = 8, .headingAbove = 14, .quoteIndentation = 16, .cellPadding = 4},
    .symbols{
        .bullets{"•", "◦", "▪"}, .unchecked = "☐", .checked = "☑", .vertical = "│", .horizontal = "─", .crossing = "┼"},
};

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
