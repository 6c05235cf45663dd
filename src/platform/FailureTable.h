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
class FailureTable {
public:
  consteval FailureTable(std::string_view type, const FailureRow<Kind> (&rows)[count])
      : type_(type), rows_(std::to_array(rows)) {
    for (std::size_t index = 0; index < count; ++index) {
      if (static_cast<std::size_t>(rows[index].kind) != index)
        throw "the rows don't stand in the order of the enum";
    }
  }

  [[nodiscard]] constexpr const FailureRow<Kind>& operator[](Kind kind) const {
    return rows_.at(static_cast<std::size_t>(kind));
  }
  [[nodiscard]] constexpr const std::array<FailureRow<Kind>, count>& rows() const { return rows_; }

  [[nodiscard]] FailureIdentity identity(Kind kind, std::optional<int> number = {}) const {
    const FailureRow<Kind>& row = (*this)[kind];
    return {std::string(type_), std::string(row.caseName), number, row.failureClass};
  }

private:
  std::string_view type_;
  std::array<FailureRow<Kind>, count> rows_;
};

} // namespace tabwright::platform
