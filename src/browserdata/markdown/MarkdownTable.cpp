// The rule of tables. The cells' texts are made first, since the columns' widths depend on them; then the rows are
// written, padded to them. A table that holds what no table can is an error of the page, and the conversion fails
// rather than show half of it.
#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/markdown/MarkdownWalk.h"
#include "platform/Characters.h"
#include "platform/Whitespace.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace tabwright::browserdata {

namespace {

struct Cell {
  std::string text;
  std::size_t width;
};
using Row = std::vector<Cell>;

constexpr std::size_t mostPadding = std::size_t{4} << 20; // blanks of one table

/// Rows that stand together: those of a section, or one that stands for itself.
struct Section {
  bool isHead = false;
  std::vector<Row> rows;
};

/// The blanks that it takes to make all cells of a column as wide as its widest.
std::size_t paddingOf(const std::vector<Section>& sections, const std::vector<std::size_t>& widths) {
  std::size_t blanks = 0;
  for (const Section& section : sections) {
    for (const Row& row : section.rows) {
      for (std::size_t column = 0; column < row.size(); ++column)
        blanks += widths[column] - row[column].width;
    }
  }
  return blanks;
}

// Texts in a table's structure are left out: they are white space, since the parser moves any other out of it.
template <class Visit>
void forEachElement(const html::Node& parent, Visit visit) {
  for (const html::Node child : parent.children())
    if (!child.isText())
      visit(child);
}

} // namespace

std::string MarkdownWalk::cellText(const html::Node& cell, const MarkdownPlace& place) {
  MarkdownPlace inside = place.inside(cell);
  // A list in a cell stands behind a bar, not under the item that the table is in.
  inside.level = 0;
  const std::string content = pieces_.take(pieces_.addTrimmed([&] {
    for (const html::Node child : cell.children())
      add(child, inside);
  }));
  std::string text;
  for (const char character : platform::trimmingWhitespaceAndNewlines(content)) {
    if (character != '\n')
      text += character;
    // A cell is one line in Markdown: a run of line ends becomes one blank.
    else if (text.back() != '\n')
      text += '\n';
  }
  std::ranges::replace(text, '\n', ' ');
  return text;
}

void MarkdownWalk::addTable(const html::Node& table, const MarkdownPlace& place) {
  const MarkdownPlace inside = place.inside(table);
  std::vector<std::size_t> widths;
  const auto readRow = [&](const html::Node& row) {
    if (row.name() != "tr")
      throw platform::failure(HTMLToMarkdownError::unexpectedNode, std::string(row.name()));
    Row cells;
    forEachElement(row, [&](const html::Node& cell) {
      if (cell.name() != "td" && cell.name() != "th")
        throw platform::failure(HTMLToMarkdownError::unexpectedNode, std::string(cell.name()));
      std::string text = cellText(cell, inside);
      // Counted in characters as readers see them, not in bytes.
      const std::size_t width = platform::characterCount(text);
      // Rows may have different numbers of cells: the widest one decides how many columns there are.
      if (widths.size() == cells.size())
        widths.push_back(0);
      widths[cells.size()] = std::max(widths[cells.size()], width);
      cells.push_back({std::move(text), width});
    });
    return cells;
  };
  std::vector<Section> sections;
  forEachElement(table, [&](const html::Node& child) {
    Section section;
    if (child.name() == "tr")
      section.rows.push_back(readRow(child));
    else if (child.name() == "thead" || child.name() == "tbody" || child.name() == "tfoot")
      forEachElement(child, [&](const html::Node& row) { section.rows.push_back(readRow(row)); });
    section.isHead = child.name() == "thead";
    sections.push_back(std::move(section));
  });

  // One cell of a long text makes a column wide for all rows; where that would be out of all proportion no cell is
  // padded, and nothing of the text is lost.
  const bool isPadded = paddingOf(sections, widths) <= mostPadding;
  pieces_.add(paragraph_);
  for (const Section& section : sections) {
    for (const Row& row : section.rows) {
      pieces_.add("|");
      for (std::size_t column = 0; column < row.size(); ++column) {
        const std::size_t padding = isPadded ? widths[column] - row[column].width : 0;
        pieces_.add(" " + row[column].text + std::string(padding, ' ') + " |");
      }
      pieces_.add(line_);
    }
    // Markdown's line below the header, as wide as the columns.
    if (section.isHead) {
      std::string separator = "|";
      for (const std::size_t width : widths)
        separator += " " + std::string(width, '-') + " |";
      pieces_.add(separator);
      pieces_.add(line_);
    }
  }
  pieces_.add(paragraph_);
}

} // namespace tabwright::browserdata
