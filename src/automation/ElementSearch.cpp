// One call for each level, whatever its width. The depth is bounded, as a window of a large application has thousands
// of elements, and what is looked for stands near the top.
#include "automation/ElementSearch.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tabwright::automation {

using platform::AccessibleElement;
using platform::AccessibleFacts;
using platform::AccessibleRole;
using platform::AccessibleState;

namespace {

constexpr std::size_t mostLevelsAboveMenus = 9; ///< menu bars, toolbars and open menus stand at most so deep

} // namespace

AccessibleWindows windowsOf(platform::Accessibility& accessibility, const AccessibleElement& application,
                            const platform::CallLimits& limits) {
  const auto root = accessibility.read({&application, 1}, {.children = true, .toolkit = true}, limits).front();
  const std::vector<AccessibleElement> children = root.children.value_or(std::vector<AccessibleElement>{});
  std::vector<AccessibleFacts> facts =
      accessibility.read(children, {.name = true, .role = true, .states = true, .children = true}, limits);
  AccessibleWindows windows{root.toolkit.value_or(""), {}};
  for (std::size_t each = 0; each < children.size(); ++each)
    windows.all.push_back({children[each], std::move(facts[each])});
  const auto active = std::ranges::find_if(windows.all, [](const AccessibleWindow& window) {
    return window.facts.states && window.facts.states->has(AccessibleState::active);
  });
  // Rotated, so the others keep their order.
  if (active != windows.all.end())
    std::rotate(windows.all.begin(), active, active + 1);
  return windows;
}

bool searchDown(platform::Accessibility& accessibility, std::vector<AccessibleElement> level,
                const platform::CallLimits& limits, const TakeElement& take) {
  for (std::size_t depth = 0; depth < mostLevelsAboveMenus && !level.empty(); ++depth) {
    const auto facts = accessibility.read(level, {.role = true, .children = true}, limits);
    std::vector<AccessibleElement> below;
    for (std::size_t each = 0; each < level.size(); ++each) {
      if (take(level[each], facts[each]))
        return true;
      // A page may hold thousands of elements, and menus and toolbars of its own.
      if (facts[each].children && facts[each].role != AccessibleRole::documentWeb)
        below.insert(below.end(), facts[each].children->begin(), facts[each].children->end());
    }
    level = std::move(below);
  }
  return false;
}

} // namespace tabwright::automation
