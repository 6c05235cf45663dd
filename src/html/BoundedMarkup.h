#pragma once

#include <string>
#include <string_view>

namespace tabwright::html {

/// The same page, written so that building its tree costs time and memory in proportion to its length, whatever it
/// says.
///
/// What a tree builder does for a tag can grow with all that is open at that moment: elements nested without end,
/// formatting that nobody closed and that is repeated in each block, attributes compared with each other. This reads
/// the page as the HTML standard's tokenizer does, keeps account of what a tree builder would have open
/// (`OpenElements`), and leaves out what would go beyond the bounds that `Document` states.
///
/// On the way it settles what needs no tree: comments, scripts, style sheets, templates and embedded documents are left
/// out; of drawings and formulas (SVG, MathML) only texts stay, and HTML inside them; what `textarea`, `title` and
/// `xmp` hold is written as plain text. So the only states that the tokenizer behind it comes into are those of text
/// and tags.
///
/// A page within the bounds keeps all its other tags as they are. Throws `ParseFault` for one with more tags and
/// attributes than `Document` takes.
[[nodiscard]] std::string boundedMarkup(std::string_view page);

} // namespace tabwright::html
