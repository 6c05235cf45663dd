// Rows are laid out as the HTML standard forms a table: each cell takes the first columns that no cell above reaches
// into. `Builder` keeps, by column, how many further rows the cell above takes. Rich Text Format wants each row whole,
// so places that a cell above covers become cells that go on from it, and places that nothing covers empty ones.
#include "browserdata/richtext/TableGrid.h"

#include "browserdata/richtext/TagEffects.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

namespace tabwright::browserdata {
namespace {

constexpr int minimumWeight = 4; // characters
constexpr int maximumWeight = 48;
constexpr int maximumRows = 65534; // that a span takes, as in the standard

// A span as an attribute says it, `zero` for "0"; 1 when it says no number.
int spanOf(html::Node cell, std::string_view attribute, int zero, int maximum) {
  const auto text = cell.attribute(attribute);
  int span = 1;
  if (!text || std::from_chars(text->data(), text->data() + text->size(), span).ec != std::errc())
    return 1;
  return span == 0 ? zero : std::clamp(span, 1, maximum);
}

// About how many characters a cell shows, looking no further than a column can be wide.
// `nodesLeft` ends the walk through nodes without text.
int weightOf(html::Node node, int limit, int& nodesLeft) {
  if (node.isText())
    return static_cast<int>(std::min<std::size_t>(node.text().size(), static_cast<std::size_t>(limit)));
  int weight = 0;
  for (const html::Node child : node.children()) {
    if (weight >= limit || --nodesLeft <= 0)
      break;
    weight += weightOf(child, limit - weight, nodesLeft);
  }
  return weight;
}

bool isBlankText(html::Node node) {
  return node.isText() && (node.text().empty() || node.text() == " ");
}

} // namespace

class TableGrid::Builder {
public:
  void addParts(html::Node parent, bool isHeader) {
    for (const html::Node child : parent.children()) {
      const std::string_view name = child.name();
      if (!child.isText() && isHidden(tagEffect(name), child))
        continue;
      if (name == "tr") {
        addRow(child, isHeader);
      } else if (name == "thead" || name == "tbody" || name == "tfoot") {
        addParts(child, name == "thead");
        endSpans(); // they end with the group
      } else if (!isBlankText(child) && name != "colgroup" && name != "col") {
        grid_.before.push_back(child);
      }
    }
  }

  TableGrid finish() && {
    for (const Column& column : std::span(above_).first(static_cast<std::size_t>(columns_)))
      grid_.weights_.push_back(column.weight);
    return std::move(grid_);
  }

private:
  struct Column {
    int rowsLeft = 0; // that the cell above takes
    int width = 1;    // of that cell, in columns from this one on
    int weight = 0;
  };

  void addRow(html::Node tr, bool isHeader) {
    TableRow row;
    row.isHeader = isHeader;
    int column = 0;
    for (const html::Node child : tr.children()) {
      if (isBlankText(child) || (!child.isText() && isHidden(tagEffect(child.name()), child)))
        continue;
      fill(row, column, false);
      if (column == maximumColumns)
        row.rest.push_back(child);
      else
        addCell(row, column, child);
    }
    fill(row, column, true);
    if (row.cells.empty())
      return;
    if (!row.rest.empty())
      row.cells.back().goesOn = false; // what is written there must be seen
    columns_ = std::max(columns_, column);
    grid_.rows.push_back(std::move(row));
  }

  void addCell(TableRow& row, int& column, html::Node cell) {
    const bool isCell = cell.name() == "td" || cell.name() == "th";
    int columns = isCell ? std::min(spanOf(cell, "colspan", 1, 1000), maximumColumns - column) : 1;
    for (int offset = 1; offset < columns; ++offset) {
      // The standard lets such cells overlap; here the later one ends before the one that comes down.
      if (above(column + offset).rowsLeft > 0)
        columns = offset;
    }
    const int rows = isCell ? spanOf(cell, "rowspan", maximumRows, maximumRows) : 1;
    ++cells_;
    row.cells.push_back({cell, columns, rows > 1, false});
    int nodesLeft = maximumWeight;
    // A wide cell shares its text among its columns.
    const int weight = weightOf(cell, maximumWeight, nodesLeft) / columns;
    for (int offset = 0; offset < columns; ++offset, ++column) {
      above(column) = {rows - 1, columns - offset, std::max(above(column).weight, weight)};
    }
  }

  // Continues the cells above from `column` on: up to the first free column, or, past gaps, the last that is taken.
  void fill(TableRow& row, int& column, bool isRowEnd) {
    const int end = isRowEnd ? columns_ : maximumColumns;
    const auto isTaken = [](const Column& above) { return above.rowsLeft > 0; };
    while (column < end) {
      const auto rest = std::span(above_).subspan(static_cast<std::size_t>(column));
      if (!isTaken(rest.front()) && (!isRowEnd || std::ranges::none_of(rest, isTaken)))
        return;
      if (++filled_ > maximumFilling * cells_) {
        endSpans();
        return;
      }
      TableCell cell;
      cell.goesOn = isTaken(rest.front());
      cell.columns = cell.goesOn ? rest.front().width : 1;
      row.cells.push_back(cell);
      for (int offset = 0; offset < cell.columns; ++offset, ++column) {
        if (cell.goesOn)
          --above(column).rowsLeft;
      }
    }
  }

  void endSpans() {
    for (Column& column : above_)
      column.rowsLeft = 0;
  }

  Column& above(int column) { return above_.at(static_cast<std::size_t>(column)); }

  TableGrid grid_;
  std::array<Column, maximumColumns> above_{};
  // Of the widest row so far.
  int columns_ = 0;
  long cells_ = 0;
  long filled_ = 0;
};

TableGrid TableGrid::of(html::Node table) {
  Builder builder;
  builder.addParts(table, false);
  return std::move(builder).finish();
}

// The width is shared by weight; the bounds of a weight keep a column from vanishing, and from taking all.
std::vector<int> TableGrid::edges(int left, int width) const {
  constexpr int minimumWidth = 20;
  const auto weightIn = [](int weight) { return std::clamp(weight, minimumWeight, maximumWeight); };
  int sum = 0;
  for (const int weight : weights_)
    sum += weightIn(weight);
  std::vector<int> result;
  int counted = 0;
  int edge = left;
  for (const int weight : weights_) {
    counted += weightIn(weight);
    // Each edge lies beyond the last, also where a column's share of the width rounds to nothing.
    edge = std::max(edge + minimumWidth, left + width * counted / sum);
    result.push_back(edge);
  }
  return result;
}

// The first cell over several rows says \clvmgf, those that continue it \clvmrg. All have borders, as the page's are
// unknown.
std::string rowDefinition(const TableRow& row, const std::vector<int>& edges, int left, bool isRightToLeft) {
  constexpr std::string_view borders = "\\clbrdrt\\brdrs\\brdrw10\\clbrdrl\\brdrs\\brdrw10\\clbrdrb\\brdrs\\brdrw10"
                                       "\\clbrdrr\\brdrs\\brdrw10";
  std::string result = fmt::format("\\trowd\\trgaph108\\trleft{}", left);
  if (row.isHeader)
    result += "\\trhdr";
  if (isRightToLeft)
    result += "\\rtlrow";
  std::size_t column = 0;
  for (const TableCell& cell : row.cells) {
    column += static_cast<std::size_t>(cell.columns);
    if (cell.goesOn)
      result += "\\clvmrg";
    else if (cell.startsDown)
      result += "\\clvmgf";
    result += borders;
    fmt::format_to(std::back_inserter(result), "\\cellx{}", edges.at(column - 1));
  }
  return result;
}

} // namespace tabwright::browserdata
