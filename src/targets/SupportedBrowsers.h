#pragma once

#include "engine/TargetContext.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::targets {

using engine::TargetContext;

/// The browsers that actions can aim at, in the order in which they are offered.
[[nodiscard]] const std::vector<TargetContext>& supportedBrowsers();

/// The supported browser, or the frontmost entry, that a user calls `text`: its id, its short name ("chromium",
/// "frontmost") or its name ("Google Chrome"), ignoring case.
[[nodiscard]] std::optional<TargetContext> findTargetContext(std::string_view text);

/// The shortest text that `findTargetContext` reads as this target: the short name where there is one, else the id.
[[nodiscard]] std::string_view shortNameOf(const TargetContext& context);

} // namespace tabwright::targets
