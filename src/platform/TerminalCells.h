#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Text as a terminal shows it: UTF-8 in cells, where wide East Asian characters and emoji take two and marks none.
namespace tabwright::platform {

/// The cells that the text takes on one line.
[[nodiscard]] std::size_t cellsOf(std::string_view text);

/// The text on one line that can do a terminal no harm: runs of white space and control characters become a blank.
/// Bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string onOneLine(std::string_view text);

/// The text with its line feeds and tabs, without other control characters.
[[nodiscard]] std::string harmless(std::string_view text);

/// As much of the text as fits into `cells`, with an ellipsis where something was left out.
[[nodiscard]] std::string fitted(std::string_view text, std::size_t cells);

/// The words of the text, which blanks part, in lines of no more than `width` cells that begin with `indent` blanks and
/// end in line feeds. A longer word has a line of its own. No words: nothing.
[[nodiscard]] std::string wrapped(std::string_view text, std::size_t indent, std::size_t width = 80);

/// Takes cells from a table's widest columns, but from none below its least width, until all together fit into
/// `available` or nothing is left to take.
void shrinkColumns(std::vector<std::size_t>& widths, const std::vector<std::size_t>& least, std::size_t available);

} // namespace tabwright::platform
