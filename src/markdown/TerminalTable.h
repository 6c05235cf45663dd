#pragma once

#include "markdown/InlineText.h"
#include "markdown/Node.h"
#include "markdown/Theme.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tabwright::markdown {

/// The lines of a table (a node of kind `table`) in at most `width` cells, without line feeds and without blanks at
/// their ends. Where the columns don't fit, each row becomes a paragraph of "header: cell" lines.
[[nodiscard]] std::vector<std::string> terminalTable(const Node& table, const Theme& theme, std::size_t width,
                                                     TerminalColours colours);

} // namespace tabwright::markdown
