#pragma once

#include "markdown/Document.h"
#include "markdown/Theme.h"

#include <cstdint>
#include <string>

namespace tabwright::markdown {

/// The brightness of the window's ground.
/// Chosen by whoever shows the text: it decides which colour of each pair is taken.
enum class ColourScheme : std::uint8_t { light, dark };

/// The document as the rich text of Qt: a fragment of its "Supported HTML Subset"
/// (https://doc.qt.io/qt-6/richtext-html-subset.html), UTF-8, for `QTextDocument::setHtml` and labels.
///
/// Nothing of the document's text is taken as HTML: markup in it is shown as text, and control characters are left out.
/// Links are those of `openableAddress`; the text of all others stands there without a link. Images are their
/// alternative text, since nothing is loaded for a document.
/// Never fails. `theme` is read during the call only. Time in proportion to the document. Threads: any.
[[nodiscard]] std::string richText(const Document& document, const Theme& theme, ColourScheme scheme);

} // namespace tabwright::markdown
