#pragma once

#include "platform/Failure.h"

#include <cstddef>

namespace tabwright::html {

/// A text that the parser refuses.
class ParseFault final : public platform::Failure {
public:
  /// The bounds are those of `Document`; each is told with its number.
  enum class Bound { bytes, tagsAndAttributes };
  /// A text that has more of something than the `maximum` that is taken.
  ParseFault(Bound bound, std::size_t maximum) : bound_(bound), maximum_(maximum) {}

  [[nodiscard]] std::string errorDescription() const override;
  [[nodiscard]] platform::FailureIdentity identity() const override { return {"ParseFault", "tooLong", {}}; }

private:
  Bound bound_;
  std::size_t maximum_;
};

} // namespace tabwright::html
