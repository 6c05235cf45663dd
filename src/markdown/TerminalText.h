#pragma once

#include "markdown/Document.h"
#include "markdown/InlineText.h"
#include "markdown/Theme.h"

#include <cstddef>
#include <string>

namespace tabwright::markdown {

/// The document for a terminal of `width` cells: UTF-8 lines, each with a line feed; empty for an empty document.
///
/// No line is wider than the terminal, apart from words that have no place to be parted; in tables even those are
/// parted. A table whose columns would become too narrow is shown row by row, each cell under its column's header.
/// Quotes and lists that would leave less than half of the terminal (or 16 cells) are not indented further.
///
/// With colours, links are hyperlinks of the terminal (OSC 8); without, their address follows the text in angle
/// brackets, if it isn't the text. Only addresses that `openableAddress` allows are shown as either. Whatever control
/// characters the document holds, none but line feeds and the theme's own escape sequences are in the result; with
/// colours off, none but line feeds. A width of 0 counts as 1.
[[nodiscard]] std::string terminalText(const Document& document, const Theme& theme, std::size_t width,
                                       TerminalColours colours);

} // namespace tabwright::markdown
