// Toolkits differ in two things: whether an item's menu is an element of its own (Qt) or its items lie directly below
// it (GTK, Firefox, Chromium), and whether hidden items are published. Items are made first, with all that will tell
// later; the menu of an item is made of the one element below it, or of nothing.
#include "automation/MenuTranslation.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace tabwright::automation {

using platform::AccessibleElement;
using platform::AccessibleFacts;
using platform::AccessibleRole;
using platform::AccessibleState;

namespace {

constexpr std::array itemRoles{AccessibleRole::menu, AccessibleRole::menuItem, AccessibleRole::checkMenuItem,
                               AccessibleRole::radioMenuItem, AccessibleRole::tearoffMenuItem};

bool isItem(const AccessibleFacts& answer, bool isInBar) {
  return answer.role && (std::ranges::find(itemRoles, *answer.role) != itemRoles.end() ||
                         (*answer.role == AccessibleRole::separator && !isInBar));
}

bool isVisible(const AccessibleFacts& answer) {
  return answer.states && answer.states->has(AccessibleState::visible);
}

std::optional<std::string> titleOf(const AccessibleFacts& answer) {
  // Whatever name the toolkit gives a line.
  if (answer.role == AccessibleRole::separator)
    return "";
  std::optional<std::string> title = answer.name;
  if (title)
    title->erase(title->find_last_not_of(' ') + 1);
  return title;
}

std::optional<bool> isEnabled(const AccessibleFacts& answer) {
  if (!answer.states)
    return std::nullopt;
  return answer.states->has(AccessibleState::enabled) && answer.states->has(AccessibleState::sensitive);
}

AxeElement made(AxeElement::Facts facts, const AxeElement& parent) {
  facts.source = parent.facts().source;
  facts.parent = parent.sharedFacts();
  return AxeElement(std::make_shared<const AxeElement::Facts>(std::move(facts)));
}

} // namespace

std::vector<AxeElement> itemsOf(const AxeElement& barOrMenu, std::span<const AccessibleElement> elements,
                                std::span<const AccessibleFacts> answers) {
  const bool isInBar = barOrMenu.facts().role == axerole::menuBar;
  // Without a visible one the whole menu is closed, and the state says nothing.
  const bool canHide = std::ranges::any_of(
      answers, [&](const AccessibleFacts& answer) { return isItem(answer, isInBar) && isVisible(answer); });
  std::vector<AxeElement> items;
  for (std::size_t each = 0; each < answers.size(); ++each) {
    const AccessibleFacts& answer = answers[each];
    if (!isItem(answer, isInBar) || (canHide && answer.states && !isVisible(answer)))
      continue;
    AxeElement::Facts facts;
    facts.role = isInBar ? axerole::menuBarItem : axerole::menuItem;
    facts.title = titleOf(answer);
    facts.isEnabled = isEnabled(answer);
    // Counted among the items that are kept, as the positions of a later reading are.
    facts.position = items.size();
    facts.element = elements[each];
    facts.below = answer.children.value_or(std::vector<AccessibleElement>{});
    facts.opensMenu = answer.role == AccessibleRole::menu || !facts.below.empty() ||
                      (answer.states && answer.states->has(AccessibleState::hasPopup));
    // An item of the role of a menu has its items directly below.
    facts.mayHoldMenu = answer.role != AccessibleRole::menu && facts.below.size() == 1;
    items.push_back(made(std::move(facts), barOrMenu));
  }
  return items;
}

std::optional<AxeElement> menuOf(const AxeElement& item, const AccessibleFacts* only) {
  if (!item.facts().opensMenu)
    return std::nullopt;
  AxeElement::Facts facts;
  facts.role = axerole::menu;
  // A menu of its own, as Qt has it; else one is made that stands for the item's element.
  if (only && only->role == AccessibleRole::popupMenu) {
    facts.title = titleOf(*only);
    facts.element = item.facts().below.front();
    facts.below = only->children.value_or(std::vector<AccessibleElement>{});
  } else {
    facts.title = "";
    facts.element = item.facts().element;
    facts.below = item.facts().below;
  }
  return made(std::move(facts), item);
}

} // namespace tabwright::automation
