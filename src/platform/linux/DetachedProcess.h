#pragma once

#include <string>
#include <vector>

namespace tabwright::platform {

/// Starts a program that has nothing to do with this process any more: in a session of its own, without a terminal, and
/// nobody's child, so that it outlives this process and its end is nobody's to collect. `words` are the program (on
/// PATH, or a path) and its arguments; `folder` is where it starts, empty: here. Yields 0 once the program runs, else
/// the errno of what failed. Its input is empty and its output is dropped. It has this process' environment, and
/// inherits descriptors that aren't closed on exec. `words` mustn't be empty. Blocks until the program has begun, which
/// takes milliseconds.
[[nodiscard]] int startDetached(const std::vector<std::string>& words, const std::string& folder);

} // namespace tabwright::platform
