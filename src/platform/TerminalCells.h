#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text as a terminal shows it: UTF-8 in cells, where wide East Asian characters and emoji take two and marks none.
namespace tabwright::platform {

/// The cells that the text takes on one line. Characters whose width depends on the surroundings take one. Line feeds
/// have no meaning here.
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

} // namespace tabwright::platform
