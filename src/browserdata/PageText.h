#pragma once

#include "browserdata/pagetext/InlineText.h"

#include <string>
#include <string_view>

namespace tabwright::browserdata {

/// Reads the HTML of a page, or of a part of one, as text: as GitHub Flavored Markdown, or plain.
///
///     PageText{.html = "<h2>News</h2><p>All is <b>well</b>.", .base = "https://x.test/"}.convert().text
///     // "## News\n\nAll is **well**.\n"
///
/// In Markdown the text, the links and the code of the page come back when it is read again by GitHub's rules: what
/// would mark up in a text is escaped, and nothing else; links and images have absolute addresses; code keeps its
/// lines. What Markdown has no form for keeps its text: lists of definitions are items beneath their terms, a table in
/// a cell is its text, and emphasis that could not be told from text where it stands is left out. A table without a row
/// of headers gets an empty one. `sub` and `sup` stay as tags.
///
/// Left out is what a reader doesn't see or can't read as text: `hidden` elements and those hidden by their own style,
/// scripts, drawings, players, fields of forms.
///
/// `HTMLToMarkdown` is the conversion with rules of its own that tabs' selections and pages have had from the
/// beginning.
struct PageText {
  enum class Part : std::uint8_t {
    whole,
    mainContent ///< what the page is there for, by the rules of pagetext/MainContent.h; without frames in it
  };
  struct Result {
    std::string text; ///< lines, each with its line feed
    Part part;        ///< `whole` also where no main content could be told apart
  };

  /// UTF-8; lives as long as this.
  std::string_view html;
  /// The page's address, which its own addresses are relative to, unless its `base` element says another. Empty when it
  /// is not known: relative addresses stay so.
  std::string base = {};
  TextForm form = TextForm::markdown;
  Part part = Part::whole;

  /// Throws `HTMLToMarkdownError::unprocessableHTML`; then nothing is converted. Time and memory are in proportion to
  /// the HTML. From any thread.
  [[nodiscard]] Result convert() const;
};

} // namespace tabwright::browserdata
