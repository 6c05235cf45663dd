#pragma once

#include "platform/BrowserTable.h"

#include <string>
#include <string_view>

namespace tabwright::app {

/// The row of a browser by its short name or id, in any case. Throws `UsageError` for a name that nobody knows, and for
/// a browser that has no program here, which Safari hasn't. `purpose` is what the browser is wanted for: "to start".
[[nodiscard]] const platform::BrowserFacts& requireBrowser(const std::string& wanted, std::string_view purpose);

} // namespace tabwright::app
