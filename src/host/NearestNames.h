#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::host {

/// Those of `names` that a user who wrote `wanted` may have meant, best first, at most three: names within a few typing
/// errors of it, and names that hold it. Case (of ASCII letters) doesn't count.
[[nodiscard]] std::vector<std::string> nearestNames(std::string_view wanted, std::span<const std::string> names);

/// The end of a complaint about a name: " Did you mean A, B or C?" or, when nothing is near, `otherwise`.
[[nodiscard]] std::string didYouMean(std::string_view wanted, std::span<const std::string> names,
                                     std::string_view otherwise);

} // namespace tabwright::host
