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

/// Starts the browser with the profile that this program keeps for it. Yields a sentence for the user; empty when it
/// can be driven.
[[nodiscard]] std::string startBrowser(const std::string& id);

} // namespace tabwright::desktop
