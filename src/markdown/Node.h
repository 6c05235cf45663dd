#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tabwright::markdown {

/// One node of a Markdown document: plain data that owns its children.
///
/// The kinds are those of GitHub Flavored Markdown (https://github.github.com/gfm/). Beside `kind` and `children` a
/// node only uses the members that name its kind; the others keep their initial value. All texts are valid UTF-8,
/// with entities and backslash escapes already resolved, and may hold any character but U+0000.
struct Node {
  enum class Kind : std::uint8_t {
    // Blocks
    document,
    heading,
    paragraph,
    blockQuote,
    list, ///< its children are items and task items only
    item,
    taskItem,
    codeBlock,
    htmlBlock, ///< markup, kept and shown as text
    thematicBreak,
    table, ///< its children are rows; each row has as many cells as `alignments` has entries
    row,
    cell,
    // Inlines
    text,
    code,
    html,
    emphasis,
    strong,
    strikethrough,
    link,
    image, ///< its children are the alternative text
    softBreak,
    hardBreak,
  };

  /// Of a table's column; `none` where the delimiter row has no colon, which is shown like `left`.
  enum class Alignment : std::uint8_t { none, left, centre, right };

  /// Decides which of the members below mean anything.
  Kind kind = Kind::document;
  int level = 0;                     ///< heading: 1 to 6
  int start = 0;                     ///< list: number of the first item of an ordered one
  bool isOrdered = false;            ///< list
  bool isTight = false;              ///< list: its items are not separated by blank lines
  bool isChecked = false;            ///< task item
  bool isHeader = false;             ///< row: the first one of each table
  std::string text;                  ///< text, code, codeBlock, html, htmlBlock. Blocks end with a line feed
  std::string language;              ///< codeBlock: the first word after the fence, or empty
  std::string address;               ///< link, image: as written, not checked (see `openableAddress`)
  std::string title;                 ///< link, image
  std::vector<Alignment> alignments; ///< table: one entry for each column
  /// Empty in leaves. The order of the text.
  std::vector<Node> children;
};

} // namespace tabwright::markdown
