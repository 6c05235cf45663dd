#pragma once

#include "browserdata/pagetext/InlineText.h"

#include <string>
#include <vector>

namespace tabwright::browserdata {

/// Settled pieces as GitHub Flavored Markdown: no blank at the edge of a mark, no mark around nothing. Each mark is
/// written as it is read there, or left out: emphasis inside of a word is “*”, else “_”, and one that the rules of
/// flanking would make text of is none. Pieces of text are escaped where they would mark up.
[[nodiscard]] std::string inlineMarkdown(std::vector<InlinePiece> pieces, InlinePlace place);

/// The same pieces as plain text: marks and addresses left out, an image as its alternative text.
[[nodiscard]] std::string inlinePlainText(const std::vector<InlinePiece>& pieces, InlinePlace place);

} // namespace tabwright::browserdata
