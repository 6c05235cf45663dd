#pragma once

#include "platform/Failure.h"

#include <cstddef>
#include <string>

namespace tabwright::platform {

/// A document that can't be read as JSON, and where it breaks.
///
///     The JSON document breaks around line 2, column 7: it ends too early.
class JSONFailure final : public Failure {
public:
  /// `reason` is a clause that follows a colon. Lines and columns count from 1, columns in characters.
  JSONFailure(std::string reason, std::size_t line, std::size_t column)
      : reason_(std::move(reason)), line_(line), column_(column) {}

  [[nodiscard]] std::size_t line() const noexcept { return line_; }
  [[nodiscard]] std::size_t column() const noexcept { return column_; }

  [[nodiscard]] std::string errorDescription() const override {
    return "The JSON document breaks around line " + std::to_string(line_) + ", column " + std::to_string(column_) +
           ": " + reason_ + ".";
  }
  [[nodiscard]] FailureIdentity identity() const override { return {"JSONFailure", "unreadable", {}}; }

private:
  std::string reason_;
  std::size_t line_;
  std::size_t column_;
};

} // namespace tabwright::platform
