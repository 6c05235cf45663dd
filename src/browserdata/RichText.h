#pragma once

#include "html/Document.h"

#include <string>

namespace tabwright::browserdata {

/// A page, or a selection from one, as Rich Text Format (Microsoft's RTF specification 1.9): plain ASCII, readable by
/// every word processor.
///
/// It keeps what a reader sees: paragraphs and headings, bold, italic, underlined, struck out, raised and lowered text,
/// code, links as fields, lists with their levels, tables, block quotes, rules, line breaks, runs from right to left,
/// and all of Unicode; images stand as their alternative text. White space counts as in a browser: collapsed, but
/// for `pre`. Colours, fonts and sizes of the page are left out.
///
/// Every document has a form, the empty one included. Time and memory in proportion to the page.
[[nodiscard]] std::string richText(const html::Document& page);

} // namespace tabwright::browserdata
