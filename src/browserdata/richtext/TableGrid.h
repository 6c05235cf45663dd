#pragma once

#include "html/Node.h"

#include <optional>
#include <string>
#include <vector>

namespace tabwright::browserdata {

/// A cell of a row.
struct TableCell {
  std::optional<html::Node> content; ///< nothing where the cell above goes on
  int columns = 1;                   ///< that it takes
  bool startsDown = false;           ///< whether it goes on in the rows below
  bool goesOn = false;               ///< whether it continues the cell above
};

/// A row, its cells from the first column on without gaps.
struct TableRow {
  std::vector<TableCell> cells;
  std::vector<html::Node> rest; ///< cells beyond the last column, to be written into the last cell
  bool isHeader = false;        ///< whether pages should repeat it
};

/// The cells of a table by row and column, with their spans.
///
///     const auto grid = TableGrid::of(table);
///     grid.edges(left, width);        // where its columns end
///
/// Memory in proportion to the table, whatever spans say: spans downwards end when they would fill more than
/// `maximumFilling` cells for each that the table has.
class TableGrid {
public:
  static constexpr int maximumColumns = 63; ///< that word processors take
  static constexpr int maximumFilling = 4;

  [[nodiscard]] static TableGrid of(html::Node table);

  std::vector<html::Node> before; ///< captions, and what else stands in the table but in no row, in order
  std::vector<TableRow> rows;     ///< those with cells only

  /// The right edges of the columns, in twips, for a table of that width at `left`: wider where there is more text.
  /// They grow strictly.
  [[nodiscard]] std::vector<int> edges(int left, int width) const;

private:
  /// Holds the state of the columns while rows are read.
  class Builder;
  std::vector<int> weights_; // by column: about how many characters it should hold
};

/// The control words that define a row, up to its contents.
[[nodiscard]] std::string rowDefinition(const TableRow& row, const std::vector<int>& edges, int left,
                                        bool isRightToLeft);

} // namespace tabwright::browserdata
