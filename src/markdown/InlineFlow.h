#pragma once

#include "markdown/InlineText.h"
#include "markdown/Node.h"
#include "markdown/Theme.h"

namespace tabwright::markdown {

/// The inline children of a block as one text for a terminal: each with its looks added to `style`, and what can't be
/// shown as a look (links, code and so on without colours) as marks in the text. Images are their alternative text.
[[nodiscard]] InlineText inlineFlow(const Node& block, const Theme& theme, TerminalColours colours,
                                    const TerminalStyle& style);

/// Adds the inline children of a block to a text that has been begun.
void appendInlines(InlineText& text, const Node& block, const Theme& theme, TerminalColours colours,
                   const TerminalStyle& style);

} // namespace tabwright::markdown
