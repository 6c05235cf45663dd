#pragma once

#include "platform/Failure.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// One case of an enum of failures.
template <class Kind>
/// The case is named once more, since a row must not slip into another's place unseen.
struct FailureRow {
  Kind kind;
  std::string_view caseName;
  std::string_view sentence; ///< for the user: as it stands, a format of its detail, or the key of its translations
  FailureClass failureClass = FailureClass::failed;
};

/// The cases of an enum of failures, a row each in the order of the enum, or it doesn't compile.
///
///     constexpr platform::FailureTable<Fault, 2> table{
///         "Fault", {{lost, "lost", "It is lost: {}."}, {busy, "busy", "It is busy."}}};
///     platform::FailureIdentity identity(Fault fault) { return table.identity(fault); }
template <class Kind, std::size_t count>
/// Everything is known when the program is compiled; nothing is made when it starts. `count` is the number of cases:
/// one more in the enum is one more here.
class FailureTable {
public:
  /// A `throw` can't be evaluated at compile time, so a misplaced row is an error of the compiler's.
  consteval FailureTable(std::string_view type, const FailureRow<Kind> (&rows)[count])
      : type_(type), rows_(std::to_array(rows)) {
    for (std::size_t index = 0; index < count; ++index) {
      if (static_cast<std::size_t>(rows[index].kind) != index)
        throw "the rows don't stand in the order of the enum";
    }
  }

  /// The row of a case. Throws std::out_of_range for a value that is no case.
  [[nodiscard]] constexpr const FailureRow<Kind>& operator[](Kind kind) const {
    return rows_.at(static_cast<std::size_t>(kind));
  }
  /// All rows in the order of the enum, for those that go through the cases.
  [[nodiscard]] constexpr const std::array<FailureRow<Kind>, count>& rows() const { return rows_; }

  /// The identity of a case. `number` is given by catalogues that number their cases; the table knows none.
  [[nodiscard]] FailureIdentity identity(Kind kind, std::optional<int> number = {}) const {
    const FailureRow<Kind>& row = (*this)[kind];
    return {std::string(type_), std::string(row.caseName), number, row.failureClass};
  }

private:
  /// Views of literals, as those in the rows.
  std::string_view type_;
  /// Copied from the literal, which is gone after the construction.
  std::array<FailureRow<Kind>, count> rows_;
};

} // namespace tabwright::platform
