#include "automation/MenuBarSearch.h"

#include "automation/ClosedMenus.h"
#include "automation/FirefoxMenus.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tabwright::automation {

using platform::AccessibleElement;
using platform::AccessibleFacts;
using platform::AccessibleRole;
using platform::AccessibleState;

namespace {

constexpr std::size_t mostLevels = 8; ///< a menu bar stands at most so deep below its window

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
  if (active != windows.all.end())
    std::rotate(windows.all.begin(), active, active + 1);
  return windows;
}

std::shared_ptr<MenuSource> findMenuBar(platform::Accessibility& accessibility, const AccessibleElement& application,
                                        const platform::CallLimits& limits) {
  const AccessibleWindows windows = windowsOf(accessibility, application, limits);
  for (const AccessibleWindow& window : windows.all) {
    std::vector<AccessibleElement> level = window.facts.children.value_or(std::vector<AccessibleElement>{});
    for (std::size_t depth = 0; depth < mostLevels && !level.empty(); ++depth) {
      const auto facts = accessibility.read(level, {.role = true, .children = true}, limits);
      std::vector<AccessibleElement> below;
      for (std::size_t each = 0; each < level.size(); ++each) {
        const auto children = facts[each].children.value_or(std::vector<AccessibleElement>{});
        if (facts[each].role == AccessibleRole::menuBar && windows.toolkit == "Gecko")
          return std::make_shared<FirefoxMenus>(accessibility, level[each], children, limits);
        if (facts[each].role == AccessibleRole::menuBar)
          return std::make_shared<ClosedMenus>(accessibility, level[each], children, limits);
        if (facts[each].role != AccessibleRole::documentWeb)
          below.insert(below.end(), children.begin(), children.end());
      }
      level = std::move(below);
    }
  }
  return nullptr;
}

} // namespace tabwright::automation
