#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::host {

/// Those of `names` that a user who wrote `wanted` may have meant, best first, at most three: names within two typing
/// errors of it, or a third of its length where that is more, and names that hold it if it is longer than two bytes.
/// Case (of ASCII letters) doesn't count. Names that are equally near keep their order.
[[nodiscard]] std::vector<std::string> nearestNames(std::string_view wanted, std::span<const std::string> names);

/// The end of a complaint about a name: " Did you mean A, B or C?" or, when nothing is near, `otherwise`.
[[nodiscard]] std::string didYouMean(std::string_view wanted, std::span<const std::string> names,
                                     std::string_view otherwise);

} // namespace tabwright::host
