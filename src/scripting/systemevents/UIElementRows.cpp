// The rows and columns of tables whose applications show cells alone. The children of such a table are never asked for:
// an application makes an object for each of them first.
#include "platform/DesktopFault.h"
#include "scripting/systemevents/UIElementTree.h"

#include <algorithm>
#include <string>

namespace tabwright::scripting {

using platform::AccessibleElement;
using platform::AccessibleFacts;
using platform::AccessiblePlace;
using platform::AccessibleState;

namespace {

/// Rows that are kept at once. A sheet of a spreadsheet has a million, of which a script can ask for any.
constexpr std::size_t mostRows = 50'000;
/// A wider table ends here.
constexpr std::size_t mostColumns = 1000;
/// Rows that are read together once a script goes from row to row.
constexpr std::size_t rowsAhead = 64;

constexpr platform::AccessibleParts cellParts{.name = true, .description = true, .role = true, .states = true};

void unite(platform::Rectangle& place, const platform::Rectangle& other) {
  const int right = std::max(place.x + place.width, other.x + other.width);
  const int bottom = std::max(place.y + place.height, other.y + other.height);
  place.x = std::min(place.x, other.x);
  place.y = std::min(place.y, other.y);
  place.width = right - place.x;
  place.height = bottom - place.y;
}

} // namespace

// A table is one where its first cell is its own child. Elsewhere cells are in rows that the application shows itself.
void UIElementTree::findGrids(const std::vector<Number>& containers) {
  std::vector<Number> tables;
  std::vector<AccessibleElement> elements;
  for (const Number each : containers) {
    if (!isTableRole(node(each).role) || node(each).grid)
      continue;
    tables.push_back(each);
    elements.push_back(node(each).element);
  }
  const std::vector<AccessibleFacts> sizes =
      elements_.accessibility().read(elements, {.rows = true, .columns = true}, limits_);
  std::vector<AccessiblePlace> places;
  std::vector<std::size_t> sized;
  for (std::size_t each = 0; each < tables.size(); ++each) {
    at(tables[each]).grid.emplace();
    if (sizes[each].rows.value_or(0) <= 0 || sizes[each].columns.value_or(0) <= 0)
      continue;
    places.push_back({elements[each], 0, 0});
    sized.push_back(each);
  }
  const std::vector<std::optional<AccessibleElement>> cells = elements_.accessibility().cells(places, limits_);
  std::vector<AccessibleElement> firsts;
  std::vector<std::size_t> owners;
  for (std::size_t each = 0; each < cells.size(); ++each) {
    if (!cells[each])
      continue;
    firsts.push_back(*cells[each]);
    owners.push_back(sized[each]);
  }
  const std::vector<AccessibleFacts> told = elements_.accessibility().read(firsts, {.parent = true}, limits_);
  for (std::size_t each = 0; each < told.size(); ++each) {
    const std::size_t table = owners[each];
    if (told[each].parent == elements[table])
      *at(tables[table]).grid = Grid{.rows = static_cast<std::size_t>(*sizes[table].rows),
                                     .columns = std::min(static_cast<std::size_t>(*sizes[table].columns), mostColumns),
                                     .made = {},
                                     .selected = {}};
  }
}

void UIElementTree::readColumns(Number grid) {
  std::vector<AccessiblePlace> places;
  for (std::size_t column = 0; column < (**node(grid).grid).columns; ++column)
    places.push_back({node(grid).element, AccessiblePlace::header, static_cast<int>(column)});
  const std::vector<std::optional<AccessibleElement>> found = elements_.accessibility().cells(places, limits_);
  std::vector<AccessibleElement> headers;
  for (const std::optional<AccessibleElement>& header : found) {
    if (header)
      headers.push_back(*header);
  }
  const std::vector<AccessibleFacts> told = elements_.accessibility().read(headers, cellParts, limits_);
  std::vector<Number> children;
  auto facts = told.begin();
  for (const std::optional<AccessibleElement>& header : found) {
    children.push_back(
        add(grid, uiElementColumnRole(), header.value_or(node(grid).element), header ? *facts++ : AccessibleFacts{}));
    at(children.back()).children.emplace();
  }
  for (std::size_t each = 0; each < headers.size(); ++each) {
    if (!isLeftOut(told[each]))
      children.push_back(add(grid, uiElementRole(told[each]), headers[each], told[each]));
  }
  at(grid).children = std::move(children);
}

std::optional<std::size_t> UIElementTree::rowCount(Number container) {
  findGrids({container});
  const auto& grid = node(container).grid;
  return grid && *grid ? std::optional((**grid).rows) : std::nullopt;
}

UIElementTree::Number UIElementTree::row(Number grid, std::size_t position) {
  auto& made = (**at(grid).grid).made;
  if (const auto known = made.find(position); known != made.end())
    return known->second;
  if (made.size() >= mostRows)
    throw platform::failure(platform::DesktopFault::elementRefused,
                            "it has too many rows to be asked for all at once; ask for some by their numbers");
  const Number number = add(grid, uiElementRowRole(*node(grid).role), {}, {});
  at(number).row = position;
  made.emplace(position, number);
  return number;
}

std::vector<UIElementTree::Number> UIElementTree::contents(Number container) {
  std::vector<Number> all;
  for (std::size_t position = 0; position < rowCount(container).value_or(0); ++position)
    all.push_back(row(container, position));
  const std::vector<Number>& others = children(container);
  all.insert(all.end(), others.begin(), others.end());
  return all;
}

std::vector<UIElementTree::Number> UIElementTree::withNextRows(Number container) {
  std::vector<Number> rows{container};
  const Node& first = node(container);
  if (!first.row || *first.row == 0)
    return rows;
  const Number table = *first.parent;
  const Grid& grid = **node(table).grid;
  const auto before = grid.made.find(*first.row - 1);
  if (before == grid.made.end() || !node(before->second).children)
    return rows;
  const std::size_t end = std::min(grid.rows, *first.row + rowsAhead);
  for (std::size_t position = *first.row + 1; position < end; ++position) {
    const Number next = row(table, position);
    if (!node(next).children)
      rows.push_back(next);
  }
  return rows;
}

AccessibleElement UIElementTree::firstCell(const Node& row) {
  const AccessiblePlace place{node(*row.parent).element, static_cast<int>(*row.row), 0};
  const std::optional<AccessibleElement> cell = elements_.accessibility().cells({&place, 1}, limits_).front();
  if (!cell)
    throw platform::failure(platform::DesktopFault::elementGone);
  return *cell;
}

const AccessibleFacts& UIElementTree::facts(Number number) {
  if (node(number).row && !node(number).facts.states) {
    std::string texts;
    const std::vector<Number>& cells = children(number);
    for (const Number cell : cells) {
      const std::string text = node(cell).facts.name.value_or("");
      texts += texts.empty() || text.empty() ? text : " " + text;
    }
    at(number).facts.name = texts;
    at(number).facts.states = cells.empty() ? platform::AccessibleStates{}
                                            : node(cells.front()).facts.states.value_or(platform::AccessibleStates{});
  }
  return node(number).facts;
}

bool UIElementTree::isSelected(Number number) {
  const Node& asked = node(number);
  if (!asked.row)
    return asked.facts.states && asked.facts.states->has(AccessibleState::selected);
  Grid& grid = **at(*asked.parent).grid;
  const std::size_t first = *asked.row;
  if (!grid.selected.contains(first)) {
    const bool isNext = first > 0 && grid.selected.contains(first - 1);
    const std::size_t count = isNext ? std::min(rowsAhead, grid.rows - first) : 1;
    const std::vector<bool> told = elements_.accessibility().selectedRows(
        node(*asked.parent).element, static_cast<int>(first), static_cast<int>(count), limits_);
    for (std::size_t each = 0; each < told.size(); ++each)
      grid.selected[first + each] = told[each];
  }
  return grid.selected.at(first);
}

bool UIElementTree::isInGrid(Number number) const {
  const std::optional<Number>& parent = node(number).parent;
  return parent && node(*parent).row;
}

std::optional<platform::Rectangle> UIElementTree::place(Number number) {
  if (!node(number).row)
    return read(number, {.extents = true}).extents;
  std::vector<AccessibleElement> cells;
  for (const Number cell : children(number))
    cells.push_back(node(cell).element);
  std::optional<platform::Rectangle> whole;
  for (const AccessibleFacts& cell : elements_.accessibility().read(cells, {.extents = true}, limits_)) {
    if (whole && cell.extents)
      unite(*whole, *cell.extents);
    else if (cell.extents)
      whole = cell.extents;
  }
  return whole;
}

} // namespace tabwright::scripting
