// A level of a tree is read in one call: for bars and menus the elements below them, for items the one that may be
// their menu.
#include "automation/ClosedMenus.h"

#include "automation/MenuTranslation.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tabwright::automation {

using platform::AccessibleElement;
using platform::AccessibleFacts;

AxeElement::Facts ClosedMenus::barFacts() const {
  AxeElement::Facts facts;
  facts.title = "";
  facts.element = bar_;
  facts.below = itemsOfBar_;
  return facts;
}

ChildLists ClosedMenus::readChildren(std::span<const AxeElement> level) {
  // An item whose items lie directly below it has no element that could be its menu, so nothing is asked about it.
  const auto isAskedAbout = [](const AxeElement& each) { return !each.isItem() || each.facts().mayHoldMenu; };
  std::vector<AccessibleElement> asked;
  for (const AxeElement& each : level) {
    if (isAskedAbout(each))
      asked.insert(asked.end(), each.facts().below.begin(), each.facts().below.end());
  }
  const std::vector<AccessibleFacts> answers = accessibility_.read(asked, menuParts, limits_);

  ChildLists lists;
  std::size_t next = 0;
  for (const AxeElement& each : level) {
    std::span<const AccessibleFacts> own;
    if (isAskedAbout(each))
      own = std::span(answers).subspan(next, each.facts().below.size());
    next += own.size();
    if (!each.isItem()) {
      lists.push_back(itemsOf(each, each.facts().below, own));
      continue;
    }
    std::vector<AxeElement>& children = lists.emplace_back();
    if (auto menu = menuOf(each, own.empty() ? nullptr : &own.front()))
      children.push_back(std::move(*menu));
  }
  return lists;
}

void ClosedMenus::press(const AxeElement& item) {
  accessibility_.perform(item.facts().element, 0, limits_);
}

} // namespace tabwright::automation
