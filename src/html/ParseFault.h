#pragma once

#include "platform/Failure.h"

#include <cstddef>

namespace tabwright::html {

/// A text that the parser refuses.
class ParseFault final : public platform::Failure {
public:
  /// A text of `length` bytes, where at most `maximum` are taken.
  ParseFault(std::size_t length, std::size_t maximum) : length_(length), maximum_(maximum) {}

  [[nodiscard]] std::string errorDescription() const override;
  [[nodiscard]] platform::FailureIdentity identity() const override { return {"ParseFault", "tooLong", {}}; }

private:
  std::size_t length_;
  std::size_t maximum_;
};

} // namespace tabwright::html
