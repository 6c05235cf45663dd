#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::engine {

/// The failures of the text that a script delivers.
enum class StringError {
  unableToDecodeJSON,
};

/// The sentence for the user. `detail` is not used.
[[nodiscard]] std::string errorDescription(StringError error, const std::string& detail = {});
[[nodiscard]] platform::FailureIdentity identity(StringError error);

} // namespace tabwright::engine
