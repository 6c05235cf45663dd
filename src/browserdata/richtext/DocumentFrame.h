#pragma once

#include <string>

namespace tabwright::browserdata {

/// The control words that make a paragraph a heading of a level from 1 to 6, but for the number of its style, which is
/// the level.
[[nodiscard]] std::string headingWords(int level);

/// The text before the lists and the body: it opens the document's group and declares fonts (0 for text, 1 of fixed
/// pitch), colours (1 of links, 2 of highlights) and styles (1 to 6 of headings).
[[nodiscard]] std::string documentStart();

} // namespace tabwright::browserdata
