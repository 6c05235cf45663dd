#pragma once

#include "platform/Failure.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace tabwright::platform {

/// A document that can't be read as JSON, and where it breaks.
///
///     The JSON document breaks around line 2, column 7: it ends too early.
///
/// Thrown by `parseJSON` and `normalisedJSON`; a value of the wrong shape is a `JSONMismatch` instead.
class JSONFailure final : public Failure {
public:
  /// `reason` is a clause that follows a colon, `before` the document up to the place, in UTF-8. Lines and columns
  /// count from 1, columns in characters. `before` is read here and not kept.
  JSONFailure(std::string reason, std::string_view before)
      : reason_(std::move(reason)), line_(1 + static_cast<std::size_t>(std::ranges::count(before, '\n'))) {
    const std::string_view line = before.substr(before.rfind('\n') + 1); // of npos: 0
    column_ = 1 + static_cast<std::size_t>(std::ranges::count_if(line, isFirstByte));
  }

  /// The same failure of a document that has a name: "The JSON document inputDict breaks …". For callers that read
  /// several documents, of which the user should know the one that is meant.
  [[nodiscard]] JSONFailure named(std::string name) const {
    JSONFailure failure(*this);
    failure.name_ = std::move(name);
    return failure;
  }

  /// From 1. Only line feeds end a line.
  [[nodiscard]] std::size_t line() const noexcept { return line_; }
  /// From 1, in characters of UTF-8: the place behind the last one that could be read.
  [[nodiscard]] std::size_t column() const noexcept { return column_; }

  /// “Around”, since a parser notices some faults a little behind their place.
  [[nodiscard]] std::string errorDescription() const override {
    return "The JSON document " + (name_.empty() ? "" : name_ + " ") + "breaks around line " + std::to_string(line_) +
           ", column " + std::to_string(column_) + ": " + reason_ + ".";
  }
  /// A user meets it as such for a document of the user's own alone.
  [[nodiscard]] FailureIdentity identity() const override {
    return {"JSONFailure", "unreadable", {}, FailureClass::wrongUse};
  }

private:
  /// A character counts by its first byte; those that continue it have the form 10xxxxxx.
  static bool isFirstByte(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

  /// Empty for a document that has none.
  std::string name_;
  std::string reason_;
  std::size_t line_;
  std::size_t column_ = 1;
};

} // namespace tabwright::platform
