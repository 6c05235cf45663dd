#pragma once

#include "engine/TargetContext.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::targets {

/// Targets are the engine's; here they are told apart and named.
using engine::TargetContext;

/// The browsers that actions can aim at, in the order in which they are offered. Lives as long as the process.
[[nodiscard]] const std::vector<TargetContext>& supportedBrowsers();

/// The supported browser, or the frontmost entry, that a user calls `text`: its id, its short name ("chromium",
/// "frontmost") or its name ("Google Chrome"), ignoring case. Nothing for any other text. The browser needn't be
/// installed. Behind a slash one of the browser's profiles may be named, which is part of the target then.
///
///     findTargetContext("Chrome")->id           // com.google.chrome
///     findTargetContext("chromium/Work")->id    // org.chromium.chromium/work
[[nodiscard]] std::optional<TargetContext> findTargetContext(std::string_view text);

/// True for a text that may name a profile: it stands in programs between quotes, and before the number of a tab.
[[nodiscard]] bool isProfileName(std::string_view text);

/// The shortest text that `findTargetContext` reads as this target: the short name where there is one, else the id. A
/// view into the table or into `context`, which has to live as long.
[[nodiscard]] std::string_view shortNameOf(const TargetContext& context);

} // namespace tabwright::targets
