#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::browserdata {

/// Why a conversion to Markdown came to nothing.
enum class HTMLToMarkdownError {
  unexpectedNode,   ///< the detail is the name of a node that can't stand where it does, in a table
  unprocessableHTML ///< the parser refused the text, or the Markdown would be out of all proportion to it
};
/// The sentence in English; `detail` is used by `unexpectedNode` alone.
std::string errorDescription(HTMLToMarkdownError error, const std::string& detail);
platform::FailureIdentity identity(HTMLToMarkdownError error);

/// Turns the HTML of a page, or of a selection in one, into Markdown.
///
///     HTMLToMarkdown{"<h2>News</h2><p>All is <b>well</b>.</p>"}.convert();   // "\n\n## News\n\nAll is **well**.\n\n"
///
/// An allow list (`CustomSoupWhitelist`) keeps the elements that a reader sees: headings, emphasis, code, links,
/// images, lists with their levels, tables, quotes, rules. Everything else gives its text. Only links that lead
/// somewhere by ftp, http, https or mailto keep their address. Markdown's own characters in the text are not escaped,
/// and the result is not trimmed. Nested items are indented by four blanks for their first level and a tab for each
/// further one, which every reader of Markdown takes for levels.
struct HTMLToMarkdown {
  /// UTF-8; a whole page or any fragment.
  std::string html;
  /// Ends each line of the result. The paragraph's separator stands between blocks, and in place of wider gaps.
  std::string lineSeparator = "\n";
  std::string paragraphSeparator = "\n\n";

  /// Throws a failure of `HTMLToMarkdownError`; then nothing is converted. Time and memory are in proportion to the
  /// HTML: what would grow beyond, such as a table with one cell of great width in many rows, is `unprocessableHTML`.
  [[nodiscard]] std::string convert() const;
};

} // namespace tabwright::browserdata
