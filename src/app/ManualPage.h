#pragma once

#include "host/Catalogue.h"

#include <string>

namespace CLI {
class App;
}

namespace tabwright::app {

/// The manual page tabwright(1) in the man macros of roff: the fixed text of resources/manual/ around the commands and
/// options of `program` and the catalogue's actions, or the one named when `action` isn't empty. In the user's language
/// as far as the catalogues have it; ends in a line feed. Throws `UsageError` for an action that isn't there.
[[nodiscard]] std::string manualPage(const CLI::App& program, const host::Catalogue& catalogue,
                                     const std::string& action);

} // namespace tabwright::app
