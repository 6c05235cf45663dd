#pragma once

#include "browserdata/richtext/LinkTable.h"
#include "browserdata/richtext/ListTable.h"
#include "browserdata/richtext/Paragraph.h"

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::browserdata {

/// Writes paragraphs, list items, rules and tables, one behind the other.
///
/// A paragraph is open until something follows it, as what ends it depends on that: another paragraph, a cell, the end.
class BodyWriter {
public:
  /// The links that the paragraphs refer to; each paragraph that is written takes its fields from here.
  LinkTable links;

  /// The paragraph to add text to, with that format.
  /// Valid until the next call that ends it.
  [[nodiscard]] Paragraph& paragraph(const ParagraphFormat& format);

  /// Ends the paragraph at the border of a block. Without text there is none.
  void endParagraph();

  /// Keeps what follows apart from what stands above, as around paragraphs and lists. Asked for twice, it is once.
  void addRoom() { needsRoom_ = true; }

  /// The next paragraph, or else an empty one of that format, is marked as the start of an item. `endItem` ends it.
  void startItem(ListMarker marker, const ParagraphFormat& format);
  void endItem();

  /// A line across.
  void addRule(ParagraphFormat format);

  /// Begins a table. `depth` counts the tables around it, itself included. Between its rows nothing else may be added.
  void startTable(int depth);
  /// A row, as `rowDefinition` defines it: its cells are what was added up to each `endCell`.
  /// `definition` is written here for a table that stands in none, else by `endRow`.
  void startRow(std::string_view definition, int depth);
  void endCell(int depth);
  void endRow(std::string_view definition, int depth);

  /// All that was written. Nothing may be added any more.
  [[nodiscard]] std::string finish();

private:
  struct Item {
    ListMarker marker;
    ParagraphFormat format;
  };

  /// Ends the paragraph before, and says in the format whether there is room above the new one.
  void startParagraph(ParagraphFormat& format);
  void writePendingMarker();
  void writeEmptyParagraph(int tableDepth);

  /// The body so far, up to the end of the paragraph that is open.
  std::string out_;
  /// The text that is being collected; it is written when its paragraph ends.
  Paragraph paragraph_;
  std::optional<Item> pendingItem_;
  bool isOpen_ = false;
  bool needsRoom_ = false;
  int rowBefore_ = 0; // the depth of the row that was written last, while nothing follows it
};

} // namespace tabwright::browserdata
