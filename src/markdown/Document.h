#pragma once

#include "markdown/Node.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace tabwright::markdown {

/// A parsed Markdown text. It doesn't change and refers to nothing outside itself, so threads may share it.
///
///     const Document document = parse("# Hello\n\n- [x] done");
///     document.root().children[1].children[0].isChecked; // true
///     richText(document, markdownTheme, ColourScheme::light);
class Document {
public:
  /// `root` is of kind `document`. `parse` is what makes it in general.
  explicit Document(Node root) : root_(std::move(root)) {}

  /// The node of kind `document`.
  [[nodiscard]] const Node& root() const noexcept { return root_; }

private:
  Node root_;
};

/// The longest text that `parse` takes, in bytes.
inline constexpr std::size_t longestText = std::size_t{64} << 20;

/// The greatest depth of quotes, lists, emphasis and links within each other. Deeper ones vanish, their content stays.
/// No branch of a document is more than ten nodes longer, so that recursion over a document is safe.
inline constexpr std::size_t deepestNesting = 64;

/// Parses GitHub Flavored Markdown: CommonMark with tables, strikethrough, task lists and autolinks.
///
/// Every text is Markdown, so nothing is an error but a text longer than `longestText`
/// (`MarkdownError::textTooLong`). Bytes that are no UTF-8, and U+0000, become U+FFFD. The noncharacter U+FDD0 is
/// dropped. Time and memory are linear in the length of the text, whatever is in it; what that takes (`MarkupLimits.h`)
/// shows in absurd texts only. Threads: any.
[[nodiscard]] Document parse(std::string_view text);

} // namespace tabwright::markdown
