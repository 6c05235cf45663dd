#pragma once

#include "engine/TargetContext.h"

namespace tabwright::actions {

/// True for a target that, as a parameter holds it, is Safari by name. The frontmost browser isn't, whichever it turns
/// out to be.
[[nodiscard]] inline bool isSafari(const engine::TargetContext& target) {
  return target.id == "com.apple.safari";
}

} // namespace tabwright::actions
