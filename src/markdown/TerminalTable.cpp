// Columns take what their widest line needs. When that is more than there is, the widest column gives way first: down
// to its widest word as long as that helps, then into its words.
#include "markdown/TerminalTable.h"

#include "markdown/InlineFlow.h"
#include "platform/TerminalCells.h"

#include <algorithm>
#include <optional>

namespace tabwright::markdown {
namespace {

using Role = Theme::Role;
using Widths = std::vector<std::size_t>;
using Row = std::vector<InlineText>;

constexpr std::size_t leastColumn = 4;
constexpr std::size_t widestSeparator = 3; // blank, line, blank

std::optional<Widths> columnWidths(const std::vector<Row>& rows, std::size_t columns, std::size_t width) {
  const std::size_t separators = widestSeparator * (columns - 1);
  if (separators + columns * leastColumn > width)
    return std::nullopt;
  const std::size_t available = width - separators;
  Widths widths(columns, 1);
  Widths words(columns, 1);
  for (const Row& row : rows)
    for (std::size_t column = 0; column < row.size(); ++column) {
      // More than there is makes no difference, and shrinking takes a step for each cell.
      widths[column] = std::min(std::max(widths[column], row[column].widestLine()), available);
      words[column] = std::min(std::max(words[column], row[column].widestWord()), available);
    }
  platform::shrinkColumns(widths, words, available);
  platform::shrinkColumns(widths, Widths(columns, leastColumn), available);
  return widths;
}

class Table {
public:
  Table(const Node& table, const Theme& theme, std::size_t width, TerminalColours colours)
      : table_(table), theme_(theme), width_(width), colours_(colours) {
    for (const Node& node : table.children) {
      const TerminalStyle style =
          node.isHeader ? TerminalStyle().with(theme.look(Role::tableHeader).terminal) : TerminalStyle();
      Row& row = rows_.emplace_back();
      for (const Node& cell : node.children)
        row.push_back(inlineFlow(cell, theme, colours, style));
    }
  }

  std::vector<std::string> lines() {
    const std::size_t columns = table_.alignments.size();
    if (columns == 0)
      return {};
    const std::optional<Widths> widths = columnWidths(rows_, columns, width_);
    if (widths)
      layOut(*widths);
    else
      stack();
    return std::move(lines_);
  }

private:
  void layOut(const Widths& widths) {
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      addRow(rows_[row], widths);
      if (table_.children[row].isHeader)
        addRule(widths);
    }
  }

  void addRow(const Row& row, const Widths& widths) {
    std::vector<std::vector<InlineText::Range>> cells(widths.size());
    std::size_t height = 1;
    for (std::size_t column = 0; column < row.size(); ++column) {
      cells[column] = row[column].lines(widths[column], InlineText::LongWords::split);
      height = std::max(height, cells[column].size());
    }
    for (std::size_t at = 0; at < height; ++at) {
      std::string line;
      std::size_t blanks = 0; // due before what comes next, and dropped at the end of the line
      for (std::size_t column = 0; column < widths.size(); ++column) {
        if (column > 0) {
          line.append(blanks + 1, ' ').append(border(theme_.symbols.vertical));
          blanks = 1;
        }
        if (column >= row.size() || at >= cells[column].size()) {
          blanks += widths[column];
          continue;
        }
        const InlineText::Range range = cells[column][at];
        const std::size_t used = row[column].cells(range);
        const std::size_t rest = widths[column] - std::min(used, widths[column]);
        const std::size_t before = blanksBefore(column, rest);
        line.append(blanks + before, ' ').append(row[column].rendered(range, colours_));
        blanks = rest - before;
      }
      lines_.push_back(std::move(line));
    }
  }

  std::size_t blanksBefore(std::size_t column, std::size_t rest) const {
    switch (table_.alignments[column]) {
    case Node::Alignment::right:
      return rest;
    case Node::Alignment::centre:
      return rest / 2;
    case Node::Alignment::left:
    case Node::Alignment::none:
      break;
    }
    return 0;
  }

  void addRule(const Widths& widths) {
    const std::string_view dash = theme_.symbols.horizontal;
    std::string rule;
    for (std::size_t column = 0; column < widths.size(); ++column) {
      if (column > 0)
        rule.append(dash).append(theme_.symbols.crossing).append(dash);
      for (std::size_t cell = 0; cell < widths[column]; ++cell)
        rule += dash;
    }
    lines_.push_back(border(rule));
  }

  // Each cell with its column's header before it; the rows apart from each other.
  void stack() {
    const TerminalStyle header = TerminalStyle().with(theme_.look(Role::tableHeader).terminal);
    for (std::size_t row = 0; row < table_.children.size(); ++row) {
      const bool isAlone = table_.children.size() == 1;
      if (table_.children[row].isHeader && !isAlone)
        continue;
      if (!lines_.empty())
        lines_.emplace_back();
      for (std::size_t column = 0; column < table_.children[row].children.size(); ++column) {
        InlineText text;
        if (!isAlone) {
          appendInlines(text, table_.children.front().children[column], theme_, colours_, header);
          text.append(": ", header);
        }
        appendInlines(text, table_.children[row].children[column], theme_, colours_, {});
        for (const InlineText::Range line : text.lines(width_, InlineText::LongWords::split))
          lines_.push_back(text.rendered(line, colours_));
      }
    }
  }

  std::string border(std::string_view symbols) const {
    InlineText text;
    text.appendVerbatim(symbols, TerminalStyle().with(theme_.look(Role::border).terminal));
    return text.rendered({0, symbols.size()}, colours_);
  }

  const Node& table_;
  const Theme& theme_;
  std::size_t width_;
  TerminalColours colours_;
  std::vector<Row> rows_;
  std::vector<std::string> lines_;
};

} // namespace

std::vector<std::string> terminalTable(const Node& table, const Theme& theme, std::size_t width,
                                       TerminalColours colours) {
  return Table(table, theme, width, colours).lines();
}

} // namespace tabwright::markdown
