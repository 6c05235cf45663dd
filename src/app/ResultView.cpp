// A table's columns take what their widest cell needs. When that is more than the terminal has, the widest column gives
// a cell at a time, down to a least width; the last column never gives.
#include "app/ResultView.h"

#include "intents/EntityDeclaration.h"
#include "platform/StringCatalogue.h"
#include "platform/TerminalCells.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <string_view>
#include <vector>

namespace tabwright::app {
namespace {

using intents::EntityDeclaration;
using intents::PropertyDeclaration;
using intents::ValueKind;

constexpr std::size_t leastColumnWidth = 8;
constexpr std::string_view gap = "  ";
constexpr std::string_view reference = "fullID";

using Row = std::vector<std::string>;

// A property's value on one line: flags are shown by a word only when they are set.
std::string cellOf(const PropertyDeclaration& property, const boost::json::value* value) {
  if (!value || value->is_null())
    return {};
  // Lists in a table would be tables in it: their length has to do.
  if (property.type.isList)
    return std::to_string(value->as_array().size());
  switch (property.type.kind) {
  case ValueKind::entity:
    return platform::onOneLine(property.type.entity->displayRepresentation(*value));
  // A file that was saved is told by its path.
  case ValueKind::file:
    return platform::onOneLine(value->at(value->as_object().contains("path") ? "path" : "filename").as_string());
  case ValueKind::text:
    if (property.name == reference)
      return platform::onOneLine(shortReference(value->as_string()));
    return platform::onOneLine(value->as_string());
  case ValueKind::boolean:
    return value->as_bool() ? platform::localized("result.yes") : std::string();
  default:
    return platform::onOneLine(boost::json::serialize(*value));
  }
}

void fit(std::vector<std::size_t>& widths, std::size_t available) {
  const auto total = [&widths] {
    std::size_t sum = gap.size() * (widths.size() - 1);
    for (const std::size_t width : widths)
      sum += width;
    return sum;
  };
  while (total() > available) {
    // The last column holds the reference that the next command needs.
    const auto widest = std::max_element(widths.begin(), widths.end() - 1);
    if (widest == widths.end() - 1 || *widest <= leastColumnWidth)
      return;
    --*widest;
  }
}

std::string lineOf(const Row& row, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t column = 0; column < row.size(); ++column) {
    const bool isLast = column + 1 == row.size();
    // A shortened reference would be none, so the last cell may stand out on the right.
    const std::string cell = isLast ? row[column] : platform::fitted(row[column], widths[column]);
    line += cell;
    if (!isLast)
      line += std::string(widths[column] - platform::cellsOf(cell), ' ').append(gap);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

// Columns in which no item has anything to say, such as a flag that none has set.
void dropEmptyColumns(std::vector<Row>& rows) {
  // From the last, as those behind an erased one move up.
  for (std::size_t column = rows.front().size(); column-- > 0;) {
    const auto isEmpty = [column](const Row& row) { return row[column].empty(); };
    if (std::all_of(rows.begin() + 1, rows.end(), isEmpty)) {
      for (Row& row : rows)
        row.erase(row.begin() + static_cast<std::ptrdiff_t>(column));
    }
  }
}

// The cells before an item's own: its number, its window, whether it is shown there.
Row additionsTo(const boost::json::value& item, std::size_t number, const TableAdditions& additions,
                bool hasSeveralWindows) {
  // Cells that stay empty in all rows go with their columns later on.
  Row row{additions.isNumbered ? std::to_string(number) : std::string(), {}, {}};
  const boost::json::value* fullID = item.as_object().if_contains(reference);
  const auto place = fullID ? additions.places.find(std::string_view(fullID->as_string())) : additions.places.end();
  if (place == additions.places.end())
    return row;
  if (hasSeveralWindows)
    row[1] = std::to_string(place->second.window);
  if (place->second.isActive)
    row[2] = platform::localized("result.yes");
  return row;
}

std::string tableOf(const EntityDeclaration& entity, const boost::json::array& items, std::size_t width,
                    const TableAdditions& additions) {
  // The number of the only window would say nothing.
  const bool hasSeveralWindows =
      std::ranges::any_of(additions.places, [](const auto& place) { return place.second.window > 1; });
  std::vector<Row> rows{{"", platform::localized("result.window"), platform::localized("result.active")}};
  for (const std::string_view column : entity.columns)
    rows.front().push_back(entity.find(column)->title.text());
  for (const boost::json::value& item : items) {
    Row& row = rows.emplace_back(additionsTo(item, rows.size(), additions, hasSeveralWindows));
    for (const std::string_view column : entity.columns)
      row.push_back(cellOf(*entity.find(column), item.as_object().if_contains(column)));
  }
  dropEmptyColumns(rows);
  std::vector<std::size_t> widths(rows.front().size(), 0);
  for (const Row& row : rows) {
    for (std::size_t column = 0; column < row.size(); ++column)
      widths[column] = std::max(widths[column], platform::cellsOf(row[column]));
  }
  fit(widths, width);
  std::string table;
  for (const Row& row : rows)
    table += lineOf(row, widths);
  return table;
}

std::string propertiesOf(const EntityDeclaration& entity, const boost::json::object& item, std::size_t width) {
  std::vector<Row> rows;
  for (const PropertyDeclaration& property : entity.properties) {
    std::string cell = cellOf(property, item.if_contains(property.name));
    if (!cell.empty())
      rows.push_back({property.title.text(), std::move(cell)});
  }
  std::size_t widest = 0;
  for (const Row& row : rows)
    widest = std::max(widest, platform::cellsOf(row.front()));
  const std::size_t rest = std::max(leastColumnWidth, width > widest + gap.size() ? width - widest - gap.size() : 0);
  std::string lines;
  for (Row& row : rows)
    lines += lineOf({row[0], platform::fitted(row[1], rest)}, {widest, rest});
  return lines;
}

} // namespace

std::string resultView(const host::ActionResult& result, std::size_t width, const TableAdditions& additions) {
  const EntityDeclaration* entity = result.type.entity;
  if (entity && result.type.isList && !entity->columns.empty() && result.value.is_array()) {
    const boost::json::array& items = result.value.as_array();
    return items.empty() ? platform::localized("result.none") + "\n" : tableOf(*entity, items, width, additions);
  }
  // Entities without columns, such as a browser, are named by one line like any value.
  if (entity && !entity->columns.empty() && result.value.is_object())
    return propertiesOf(*entity, result.value.as_object(), width);
  std::string lines;
  for (const std::string& line : host::linesOf(result))
    lines += line + "\n";
  return lines;
}

} // namespace tabwright::app
