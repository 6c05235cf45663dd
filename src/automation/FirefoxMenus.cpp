#include "automation/FirefoxMenus.h"

#include "automation/Patience.h"

#include <algorithm>
#include <chrono>

namespace tabwright::automation {

using platform::AccessibleElement;

namespace {

constexpr std::chrono::milliseconds filling{500}; ///< a menu that has any items has them by then

bool needsFilling(const AxeElement& element) {
  // The menu of a disabled item can't be opened, and stays without items.
  return element.role() == axerole::menu && element.facts().below.empty() && element.parent()->isEnabled();
}

} // namespace

ChildLists FirefoxMenus::readChildren(std::span<const AxeElement> level) {
  std::vector<AxeElement> whole;
  for (const AxeElement& each : level)
    whole.push_back(needsFilling(each) ? filled(each) : each);
  return ClosedMenus::readChildren(whole);
}

// Opens the items on the way from the bar down, waits for what the last one opens, and closes the outermost one, with
// which the others close.
AxeElement FirefoxMenus::filled(const AxeElement& menu) {
  std::vector<AccessibleElement> way; // the items that open it, from the bar down
  for (auto each = menu.parent(); each; each = each->parent()) {
    if (each->isItem())
      way.push_back(each->facts().element);
  }
  std::ranges::reverse(way);

  AxeElement::Facts facts = menu.facts();
  for (std::size_t each = 0; each < way.size(); ++each) {
    accessibility_.perform(way[each], 0, limits_);
    eventually(limits_, filling, [&] {
      facts.below = childrenOf(way[each]);
      return each + 1 < way.size() ? areVisible({&way[each + 1], 1}) : !facts.below.empty();
    });
  }
  accessibility_.perform(way.front(), 0, limits_); // the same again closes it
  const std::vector<AccessibleElement> outermost = childrenOf(way.front());
  // Until it is out of sight, so that the next menu isn't opened into one that is closing.
  eventually(limits_, filling, [&] { return !areVisible(outermost); });
  return AxeElement(std::make_shared<const AxeElement::Facts>(std::move(facts)));
}

std::vector<AccessibleElement> FirefoxMenus::childrenOf(const AccessibleElement& item) {
  const auto answer = accessibility_.read({&item, 1}, {.children = true}, limits_).front();
  return answer.children.value_or(std::vector<AccessibleElement>{});
}

bool FirefoxMenus::areVisible(std::span<const AccessibleElement> items) {
  const auto answers = accessibility_.read(items, {.states = true}, limits_);
  return std::ranges::any_of(answers, [](const platform::AccessibleFacts& answer) {
    return answer.states && answer.states->has(platform::AccessibleState::visible);
  });
}

} // namespace tabwright::automation
