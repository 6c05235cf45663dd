// Near is what has most in common with the wanted title from the start on. Titles that are equally near stay in the
// order of the menus, so where none is near at all the first ones are named.
#include "automation/NearestTitles.h"

#include "automation/MenuPath.h"
#include "platform/CaseFolding.h"

#include <fmt/core.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace tabwright::automation {

namespace {

constexpr std::size_t mostNamed = 8;

std::string quotedList(std::string_view wanted, const std::vector<std::string>& titles) {
  const std::string folded = platform::caseFolded(wanted);
  std::vector<std::pair<std::ptrdiff_t, std::size_t>> ranked; // less what is in common, and the index
  for (std::size_t index = 0; index < titles.size(); ++index) {
    const std::string candidate = platform::caseFolded(titles[index]);
    // Negative, so that sorting puts what has most in common first, and equals in the order of the menus.
    ranked.emplace_back(folded.begin() - std::ranges::mismatch(folded, candidate).in1, index);
  }
  std::ranges::sort(ranked);
  // Each title once: several menus may have an item of the same.
  std::vector<std::string> named;
  bool areOthers = false;
  for (const auto& [common, index] : ranked) {
    std::string title = fmt::format("“{}”", titles[index]);
    if (std::ranges::find(named, title) != named.end())
      continue;
    areOthers = named.size() == mostNamed;
    if (areOthers)
      break;
    named.push_back(std::move(title));
  }
  return fmt::format("{}{}", fmt::join(named, ", "), areOthers ? " and others" : "");
}

void collect(const MenuTree& tree, std::vector<std::string>& titles) {
  if (const std::string title = tree.element.title(); !title.empty())
    titles.push_back(title);
  for (const MenuTree& child : tree.children)
    collect(child, titles);
}

} // namespace

std::string missingInMenu(std::span<const std::string> path, std::string_view title,
                          std::span<const AxeElement> items) {
  std::vector<std::string> titles;
  for (const AxeElement& item : items) {
    if (std::string each = item.title(); !each.empty())
      titles.push_back(std::move(each));
  }
  const std::string place = path.empty() ? "The menu bar" : fmt::format("“{}”", pathOf(path));
  if (titles.empty())
    return fmt::format("{} has no items that can be read, so there is no “{}”. Some menus are filled only when they "
                       "are shown.",
                       place, title);
  return fmt::format("{} has no item “{}”. It has {}.", place, title, quotedList(title, titles));
}

std::string missingInMenus(std::string_view title, const MenuTree& bar) {
  std::vector<std::string> titles;
  collect(bar, titles);
  if (titles.empty())
    return {};
  return fmt::format("None of the {} items fits “{}”. The nearest are {}.", titles.size(), title,
                     quotedList(title, titles));
}

} // namespace tabwright::automation
