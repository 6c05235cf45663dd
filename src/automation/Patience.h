#pragma once

#include "platform/CallLimits.h"

#include <chrono>
#include <functional>

namespace tabwright::automation {

/// Looks again and again, some 100 times a second, until it is so; false when the patience or the limits end first.
/// Throws DesktopFailure `stopped`.
bool eventually(const platform::CallLimits& limits, std::chrono::milliseconds patience,
                const std::function<bool()>& isSo);

} // namespace tabwright::automation
