#pragma once

#include <string>
#include <vector>

namespace tabwright::platform {

/// Starts a program that has nothing to do with this process any more: in a session of its own, without a terminal, and
/// nobody's child, so that it outlives this process and its end is nobody's to collect. `words` are the program (on
/// PATH, or a path) and its arguments; `folder` is where it starts, empty: here. Yields 0 once the program runs, else
/// the errno of what failed.
[[nodiscard]] int startDetached(const std::vector<std::string>& words, const std::string& folder);

} // namespace tabwright::platform
