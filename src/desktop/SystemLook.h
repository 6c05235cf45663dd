#pragma once

#include "platform/Accessibility.h"
#include "targets/TargetContextManager.h"
#include "views/Services.h"

#include <string>

namespace tabwright::desktop {

/// Looks at browsers and desktop for the setup; takes up to some seconds. Safe to call from any thread.
[[nodiscard]] views::SystemCondition lookAtSystem(const targets::TargetContextManager& targets,
                                                  platform::Accessibility& accessibility);

/// The names of the browsers that run now, joined as the user's language does it: "A, B, and C".
[[nodiscard]] std::string namesOfRunningBrowsers(const targets::TargetContextManager& targets);

/// Mends a browser. Yields a sentence for the user: what is left to do, or what went wrong; empty when nothing is.
/// Blocks for as long as a browser takes to start.
[[nodiscard]] std::string mend(const std::string& id, views::Mending mending);

} // namespace tabwright::desktop
