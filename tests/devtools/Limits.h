#pragma once

#include "platform/CallLimits.h"

#include <chrono>

namespace tabwright::devtools {

/// Far enough away that only a hang reaches it.
inline platform::CallLimits limits() {
  return {std::chrono::steady_clock::now() + std::chrono::seconds(60), {}};
}

} // namespace tabwright::devtools
