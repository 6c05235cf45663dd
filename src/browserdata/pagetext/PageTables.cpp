// A table is read into rows of texts, with an empty text for each place that a wide or high cell takes beside its
// first; then it is written, its first row above the line if that is a row of headers, else below an empty one. Tables
// that only lay a page out are read cell by cell. Columns are not padded: wide ones would cost readers by machine, and
// memory.
#include "browserdata/pagetext/ElementRules.h"
#include "browserdata/pagetext/PageTextWalk.h"
#include "platform/AsciiCase.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

namespace tabwright::browserdata {

namespace {

constexpr std::size_t mostColumnsWithSpans = 64; // beyond, a cell takes one place
constexpr int greatestSpan = 1'000;

struct TableRow {
  std::vector<html::Node> cells = {};
  bool isOfHeaders = false;
};

int spanOf(const html::Node& cell, std::string_view name) {
  const std::string_view text = cell.attribute(name).value_or("1");
  int span = 1;
  std::from_chars(text.data(), text.data() + text.size(), span);
  return std::clamp(span, 1, greatestSpan);
}

TableRow rowOf(const html::Node& row, bool isInHead) {
  TableRow cells{.isOfHeaders = true};
  for (const html::Node cell : row.children()) {
    if (cell.isText() || isHidden(cell))
      continue;
    cells.cells.push_back(cell);
    cells.isOfHeaders &= isInHead || cell.name() == "th";
  }
  cells.isOfHeaders &= !cells.cells.empty();
  return cells;
}

std::vector<TableRow> rowsOf(const html::Node& table) {
  std::vector<TableRow> rows;
  for (const html::Node child : table.children()) {
    if (child.isText() || isHidden(child))
      continue;
    if (child.name() == "tr")
      rows.push_back(rowOf(child, false));
    for (const html::Node row : child.children())
      if (!row.isText() && row.name() == "tr" && !isHidden(row))
        rows.push_back(rowOf(row, child.name() == "thead"));
  }
  std::erase_if(rows, [](const TableRow& row) { return row.cells.empty(); });
  return rows;
}

bool holdsTable(const html::Node& node) {
  return std::ranges::any_of(node.children(),
                             [](const html::Node& child) { return child.name() == "table" || holdsTable(child); });
}

// Of one column, or with tables in it and nothing that tells of data.
bool laysOut(const html::Node& table, const std::vector<TableRow>& rows) {
  const std::string_view role = table.attribute("role").value_or("");
  if (role == "presentation" || role == "none")
    return true;
  const bool isOfData = std::ranges::any_of(rows, [](const TableRow& row) {
    return std::ranges::any_of(row.cells, [](const html::Node& cell) { return cell.name() == "th"; });
  });
  if (isOfData)
    return false;
  return std::ranges::all_of(rows, [](const TableRow& row) { return row.cells.size() == 1; }) || holdsTable(table);
}

std::string_view alignmentOf(const html::Node& cell) {
  std::string told = platform::lowercased(cell.attribute("align").value_or(""));
  if (told.empty()) {
    const std::string style = platform::lowercased(cell.attribute("style").value_or(""));
    if (const std::size_t at = style.find("text-align:"); at != std::string::npos)
      told = style.substr(at + 11, 8);
    told.erase(0, std::min(told.find_first_not_of(' '), told.size()));
  }
  return told.starts_with("center") ? ":---:" : told.starts_with("right") ? "---:" : "---";
}

} // namespace

std::string PageTextWalk::cellText(const html::Node& cell) {
  const InlinePlace outer = std::exchange(place_, InlinePlace::cell);
  addChildren(cell);
  std::string text = line_.take(place_, form_);
  place_ = outer;
  spend(text.size());
  return text;
}

void PageTextWalk::addTable(const html::Node& table) {
  if (isInLine())
    return addRowsInLine(table);
  endBlock();
  const std::vector<TableRow> rows = rowsOf(table);
  if (laysOut(table, rows))
    return addBlockOf(table);
  for (const html::Node child : table.children())
    if (child.name() == "caption")
      add(child);

  std::vector<std::vector<std::string>> texts;
  std::vector<int> taken; // how many more rows a high cell takes, for each column
  std::size_t columns = 0;
  for (const TableRow& row : rows) {
    std::vector<std::string>& line = texts.emplace_back();
    const auto skipTaken = [&] {
      while (line.size() < taken.size() && taken[line.size()] > 0) {
        --taken[line.size()];
        line.emplace_back();
      }
    };
    for (const html::Node& cell : row.cells) {
      skipTaken();
      const int height = spanOf(cell, "rowspan");
      int width = spanOf(cell, "colspan");
      std::string text = cellText(cell);
      for (; width > 0; --width) {
        const std::size_t column = line.size();
        if (column < mostColumnsWithSpans) {
          taken.resize(std::max(taken.size(), column + 1));
          taken[column] = height - 1;
        }
        line.push_back(std::exchange(text, {}));
        if (line.size() >= mostColumnsWithSpans)
          break;
      }
    }
    skipTaken();
    columns = std::max(columns, line.size());
  }
  const auto isEmptyRow = [](const std::vector<std::string>& line) {
    return std::ranges::all_of(line, &std::string::empty);
  };
  if (std::ranges::all_of(texts, isEmptyRow))
    return;

  std::string lines;
  const auto addLine = [&](const std::vector<std::string>& cells, std::size_t count) {
    if (!lines.empty())
      lines += '\n';
    for (std::size_t column = 0; column < count; ++column) {
      const std::string_view text = column < cells.size() ? std::string_view(cells[column]) : std::string_view();
      if (!isMarkdown())
        lines.append(column > 0 ? "\t" : "").append(text);
      else
        lines.append(column > 0 ? " " : "| ").append(text).append(text.empty() ? "|" : " |");
    }
  };
  std::size_t first = 0;
  if (isMarkdown()) {
    const bool hasHeader = rows.front().isOfHeaders;
    addLine(hasHeader ? texts[first++] : std::vector<std::string>(), columns);
    std::vector<std::string> marks(columns, "---");
    for (std::size_t column = 0; column < rows.front().cells.size() && column < columns; ++column)
      marks[column] = alignmentOf(rows.front().cells[column]);
    addLine(marks, columns);
  }
  for (std::size_t row = first; row < texts.size(); ++row)
    if (!isEmptyRow(texts[row]))
      addLine(texts[row], texts[row].size());
  writeBlock(lines);
}

void PageTextWalk::addRowsInLine(const html::Node& table) {
  for (const html::Node child : table.children())
    if (child.name() == "caption")
      add(child);
  for (const TableRow& row : rowsOf(table)) {
    endBlock();
    for (const html::Node& cell : row.cells) {
      line_.addText(" ");
      addChildren(cell);
      if (line_.endsInBreak())
        continue;
      line_.addText(" ");
    }
  }
  endBlock();
}

} // namespace tabwright::browserdata
