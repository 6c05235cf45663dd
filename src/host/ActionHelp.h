#pragma once

#include "host/Catalogue.h"

#include <cstddef>
#include <string>

namespace tabwright::host {

/// All actions: the name and what it does, in a line each unless that is longer than `lineWidth` cells; without a
/// width, for files and pipes, each stands on one line. Ends in a line feed.
[[nodiscard]] std::string catalogueHelp(const Catalogue& catalogue, std::size_t lineWidth = std::string::npos);

/// One action in full, from its declaration: what it does for which choices, its parameters with types, meanings,
/// choices and defaults, its result, and command lines that run as printed. Lines of at most 80 characters but for
/// command lines. In the user's language; ends in a line feed. Throws `UsageError` for a name that isn't there.
[[nodiscard]] std::string actionHelp(const Catalogue& catalogue, std::string_view name);

} // namespace tabwright::host
