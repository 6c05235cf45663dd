#pragma once

#include "platform/Failure.h"

#include <cstddef>
#include <string>
#include <utility>

namespace tabwright::platform {

/// A document that can't be read as JSON, and where it breaks.
///
///     The JSON document breaks around line 2, column 7: it ends too early.
class JSONFailure final : public Failure {
public:
  /// `reason` is a clause that follows a colon. Lines and columns count from 1, columns in characters.
  JSONFailure(std::string reason, std::size_t line, std::size_t column)
      : reason_(std::move(reason)), line_(line), column_(column) {}

  /// The same failure of a document that has a name: "The JSON document inputDict breaks …".
  [[nodiscard]] JSONFailure named(std::string name) const {
    JSONFailure failure(*this);
    failure.name_ = std::move(name);
    return failure;
  }

  [[nodiscard]] std::size_t line() const noexcept { return line_; }
  [[nodiscard]] std::size_t column() const noexcept { return column_; }

  [[nodiscard]] std::string errorDescription() const override {
    return "The JSON document " + (name_.empty() ? "" : name_ + " ") + "breaks around line " + std::to_string(line_) +
           ", column " + std::to_string(column_) + ": " + reason_ + ".";
  }
  [[nodiscard]] FailureIdentity identity() const override { return {"JSONFailure", "unreadable", {}}; }

private:
  std::string name_;
  std::string reason_;
  std::size_t line_;
  std::size_t column_;
};

} // namespace tabwright::platform
