#pragma once

#include "html/Node.h"

#include <memory>
#include <string_view>

namespace tabwright::html {

class Arena;

/// A parsed page, or a piece of one: a tree of elements and texts by the rules of HTML (the tree construction of the
/// HTML standard), which also makes a document of any fragment.
///
///     const html::Document page = html::Document::parse("<p>Good <b>morning");
///     page.root().name();                     // "html"; its children are "head" and "body"
///
/// It leaves the standard in these points, mostly so that time and memory stay in proportion to the text whatever it
/// says:
///  - an element that would be more than `maximumDepth` levels deep becomes a sibling of the one that it would be in,
///    as in browsers;
///  - an element keeps its first `maximumAttributes` attributes;
///  - formatting that is never closed is no longer carried into further blocks once that has happened very often, and
///    only the last of very much;
///  - scripts, style sheets, templates, embedded documents and comments are left out;
///  - any doctype makes a page one that follows the standards;
///  - a `frameset` counts only before the body, `xmp` and `plaintext` are `pre`.
///
/// Elements of drawings and formulas are named after both: "svg", "svg path", "math mi".
///
/// Immutable, moved but not copied. Nodes and their texts live as long as the document.
class Document {
public:
  /// Levels from the root down, the root included. Recursion over a document goes no deeper.
  static constexpr int maximumDepth = 512;
  /// Of one element; those behind them are dropped.
  static constexpr int maximumAttributes = 64;
  /// Bytes that `parse` takes at most.
  static constexpr std::size_t maximumLength = std::size_t{128} << 20;
  /// Tags and attributes that it takes at most, since each costs a hundred bytes and more. With both bounds no page
  /// costs more than about one gigabyte.
  static constexpr std::size_t maximumMarkup = 4'000'000;

  /// Parses UTF-8; bytes that aren't become U+FFFD. Any text is a page. Throws `ParseFault` for one that is too large.
  [[nodiscard]] static Document parse(std::string_view text);

  /// The element "html". Every document has one, and in it a "head" and (frame sets apart) a "body".
  [[nodiscard]] Node root() const { return Node(*root_); }

  /// A document that was moved from may only be destroyed or assigned to.
  Document(Document&&) noexcept;
  Document& operator=(Document&&) noexcept;
  ~Document();

private:
  friend class Cleaner;
  Document(std::shared_ptr<Arena> texts, std::unique_ptr<Arena> nodes, const NodeRecord& root);

  std::shared_ptr<Arena> texts_; // names, texts and attributes, shared with documents made of this one
  std::unique_ptr<Arena> nodes_;
  const NodeRecord* root_;
};

} // namespace tabwright::html
