// Edit distance (Levenshtein) by the usual table of two rows, as each cell looks at the row above it alone. A name that
// holds what was written counts as one error away, so that "click" finds ClickElement.
#include "host/NearestNames.h"

#include "platform/AsciiCase.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace tabwright::host {

namespace {

std::size_t editDistance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> above(to.size() + 1);
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(above.begin(), above.end(), std::size_t{0});
  for (std::size_t line = 0; line < from.size(); ++line) {
    row[0] = line + 1;
    for (std::size_t column = 0; column < to.size(); ++column) {
      const std::size_t replaced = above[column] + (from[line] == to[column] ? 0 : 1);
      row[column + 1] = std::min({replaced, above[column + 1] + 1, row[column] + 1});
    }
    std::swap(above, row);
  }
  return above.back();
}

} // namespace

std::vector<std::string> nearestNames(std::string_view wanted, std::span<const std::string> names) {
  constexpr std::size_t most = 3;
  if (wanted.empty())
    return {};
  const std::string written = platform::lowercased(wanted);
  // A word of two letters is two errors away from every other one.
  const std::size_t tolerance = std::min(written.size(), std::max<std::size_t>(3, written.size() / 3 + 1)) - 1;

  std::vector<std::pair<std::size_t, std::size_t>> near; // distance and index: names equally near keep their order
  for (std::size_t index = 0; index < names.size(); ++index) {
    const std::string candidate = platform::lowercased(names[index]);
    // No fewer errors than the lengths differ by: a text of megabytes isn't compared letter by letter.
    const std::size_t difference =
        std::max(written.size(), candidate.size()) - std::min(written.size(), candidate.size());
    const bool holdsIt = written.size() > 2 && candidate.find(written) != std::string::npos;
    if (!holdsIt && difference > tolerance)
      continue;
    const std::size_t distance = holdsIt ? 1 : editDistance(written, candidate);
    if (distance <= tolerance)
      near.emplace_back(distance, index);
  }
  std::ranges::sort(near);

  std::vector<std::string> best;
  for (const auto& [distance, index] : near) {
    if (best.size() < most)
      best.push_back(names[index]);
  }
  return best;
}

std::string didYouMean(std::string_view wanted, std::span<const std::string> names, std::string_view otherwise) {
  const std::vector<std::string> near = nearestNames(wanted, names);
  if (near.empty())
    return std::string(otherwise);
  std::string sentence = " Did you mean ";
  for (std::size_t index = 0; index < near.size(); ++index) {
    if (index > 0)
      sentence += index + 1 == near.size() ? " or " : ", ";
    sentence += near[index];
  }
  return sentence + "?";
}

} // namespace tabwright::host
