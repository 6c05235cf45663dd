#pragma once

#include "updates/UpdateOutcome.h"

#include <functional>

namespace tabwright::desktop {

/// Shows an outcome in a message of its own, beside the window that the user is at, and returns at once. Where the
/// update can be installed it has a button that calls `install`. On the main actor.
void showUpdateOutcome(const updates::UpdateOutcome& outcome, std::function<void()> install);

} // namespace tabwright::desktop
