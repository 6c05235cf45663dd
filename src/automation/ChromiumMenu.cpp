// An open menu is a window of its own without a name, and the one opened last is the active one. So a menu has opened
// when another such window is active, and has closed when none or the one before is. Menus are named by the positions
// of the items on their way, not by their elements, as each opening makes new ones; `shown_` keeps those that are open,
// so that a walk over the tree opens and closes as few as it can.
#include "automation/ChromiumMenu.h"

#include "automation/ElementSearch.h"
#include "automation/MenuTranslation.h"
#include "automation/Patience.h"
#include "platform/DesktopFault.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

namespace tabwright::automation {

using platform::AccessibleElement;
using platform::AccessibleFacts;
using platform::AccessibleRole;
using platform::AccessibleState;
using platform::DesktopFault;

namespace {

constexpr std::chrono::milliseconds opening{300};  ///< a menu has opened by then
constexpr std::chrono::milliseconds closing{1000}; ///< a menu has closed by then
// Of opening a menu that doesn't come; closing has the time of as many.
constexpr int mostAttempts = 4;
constexpr platform::Key escape{.symbol = 0xff1b};

bool has(const AccessibleFacts& facts, AccessibleState state) {
  return facts.states && facts.states->has(state);
}

/// "Print… Ctrl+P" without the shortcut.
std::string withoutShortcut(const std::string& name) {
  UErrorCode status = U_ZERO_ERROR;
  icu::RegexMatcher shortcut(icu::UnicodeString(R"(\s(F\d+|((Ctrl|Alt|Shift)\+)+\S+)$)"), 0, status);
  const auto text = icu::UnicodeString::fromUTF8(name);
  shortcut.reset(text);
  std::string title;
  shortcut.replaceFirst({}, status).toUTF8String(title);
  return U_SUCCESS(status) ? title : name;
}

/// The positions of the items that lead to a menu, the button left out.
std::vector<std::size_t> pathTo(const AxeElement& menu) {
  std::vector<std::size_t> path;
  for (auto each = menu.parent(); each; each = each->parent()) {
    if (each->facts().role == axerole::menuItem)
      path.push_back(each->facts().position);
  }
  std::ranges::reverse(path);
  return path;
}

} // namespace

std::shared_ptr<MenuSource> ChromiumMenu::find(const AccessibleElement& root, pid_t process,
                                               const DesktopServices& services, const platform::CallLimits& limits) {
  const std::shared_ptr<ChromiumMenu> menu(new ChromiumMenu(root, process, services, limits));
  const bool isFound = eventually(limits, platform::Accessibility::longestArrival, [&] { return menu->findButton(); });
  return isFound ? menu : nullptr;
}

bool ChromiumMenu::findButton() {
  const auto takeButton = [this](const AccessibleElement&, const AccessibleFacts& toolbar) {
    if (toolbar.role != AccessibleRole::toolBar || !toolbar.children)
      return false;
    const auto facts = services_.accessibility.read(*toolbar.children, menuParts, limits_);
    // From the end: the button stands behind all others of the toolbar that open something.
    for (std::size_t each = facts.size(); each-- > 0;) {
      if (facts[each].role == AccessibleRole::pushButton && has(facts[each], AccessibleState::hasPopup) &&
          has(facts[each], AccessibleState::visible)) {
        button_ = (*toolbar.children)[each];
        buttonFacts_ = facts[each];
        return true;
      }
    }
    return false;
  };
  const std::vector<AccessibleWindow> windows = windowsOf(services_.accessibility, root_, limits_).all;
  return std::ranges::any_of(windows, [&](const AccessibleWindow& window) {
    // Windows without a name are menus, and an open one must not be taken for the browser's window.
    return !window.facts.name.value_or("").empty() &&
           searchDown(services_.accessibility, {window.element}, limits_, takeButton);
  });
}

AxeElement::Facts ChromiumMenu::barFacts() const {
  AxeElement::Facts facts;
  facts.title = "";
  facts.element = button_;
  return facts;
}

ChildLists ChromiumMenu::readChildren(std::span<const AxeElement> level) {
  // Only menus have to be opened; the bar and its items are known without that.
  const bool hasMenus =
      std::ranges::any_of(level, [](const AxeElement& each) { return each.facts().role == axerole::menu; });
  const auto windowBefore = hasMenus ? bringToFront() : std::nullopt;
  ChildLists lists;
  try {
    for (const AxeElement& each : level) {
      std::vector<AxeElement>& children = lists.emplace_back();
      if (each.facts().role == axerole::menuBar) {
        // Read as an item of a bar: the translation takes roles of menus alone.
        AccessibleFacts button = buttonFacts_;
        button.role = AccessibleRole::menu;
        children = itemsOf(each, {&button_, 1}, {&button, 1});
      } else if (each.facts().role == axerole::menu) {
        children = show(each);
      } else if (auto menu = menuOf(each, nullptr)) {
        children.push_back(std::move(*menu));
      }
    }
  } catch (const platform::DesktopFailure&) {
    close(windowBefore);
    throw;
  }
  if (hasMenus)
    close(windowBefore);
  return lists;
}

const std::vector<AxeElement>& ChromiumMenu::show(const AxeElement& menu) {
  const std::vector<std::size_t> path = pathTo(menu);
  const auto known = std::ranges::find(shown_, path, &Shown::path);
  if (known != shown_.end()) {
    // Menus further in close by themselves as soon as another item of this one opens its own.
    shown_.erase(known + 1, shown_.end());
    return shown_.back().items;
  }
  const AxeElement opener = onScreen(*menu.parent());
  std::vector<AxeElement> items;
  // Some items have theirs below them already, and need not be opened.
  if (!opener.facts().below.empty())
    items = itemsAmong(opener.facts().below, menu);
  else if (opener.isEnabled())
    items = open(opener.facts().element, menu);
  return shown_.emplace_back(path, std::move(items)).items;
}

AxeElement ChromiumMenu::onScreen(const AxeElement& item) {
  if (item.facts().role == axerole::menuBarItem)
    return item;
  const std::vector<AxeElement>& items = show(*item.parent());
  if (item.facts().position >= items.size())
    throw platform::failure(DesktopFault::elementGone);
  return items[item.facts().position];
}

std::vector<AxeElement> ChromiumMenu::open(const AccessibleElement& opener, const AxeElement& menu) {
  const auto before = activePopup();
  std::optional<std::vector<AxeElement>> items;
  const auto hasOpened = [&] {
    const auto popup = activePopup();
    if (popup && popup != before)
      items = readItems(*popup, menu);
    return items && !items->empty();
  };
  // The button doesn't answer for a tenth of a second after its menu was closed.
  for (int attempt = 0; attempt < mostAttempts; ++attempt) {
    services_.accessibility.perform(opener, 0, limits_);
    if (eventually(limits_, opening, hasOpened))
      break;
  }
  return items.value_or(std::vector<AxeElement>{});
}

std::optional<std::vector<AxeElement>> ChromiumMenu::readItems(const AccessibleElement& popup, const AxeElement& menu) {
  std::optional<std::vector<AxeElement>> items;
  searchDown(services_.accessibility, {popup}, limits_, [&](const AccessibleElement&, const AccessibleFacts& facts) {
    if (facts.role == AccessibleRole::menu && facts.children)
      items = itemsAmong(*facts.children, menu);
    return items.has_value();
  });
  return items;
}

std::vector<AxeElement> ChromiumMenu::itemsAmong(const std::vector<AccessibleElement>& elements,
                                                 const AxeElement& menu) {
  std::vector<AccessibleFacts> answers = services_.accessibility.read(elements, menuParts, limits_);
  for (AccessibleFacts& answer : answers) {
    if (answer.name)
      answer.name = withoutShortcut(*answer.name);
  }
  return itemsOf(menu, elements, answers);
}

// The active window comes first among those of the application; it is a menu when it has no name.
std::optional<AccessibleElement> ChromiumMenu::activePopup() {
  const std::vector<AccessibleWindow> windows = windowsOf(services_.accessibility, root_, limits_).all;
  if (windows.empty() || !has(windows.front().facts, AccessibleState::active) ||
      !windows.front().facts.name.value_or("").empty())
    return std::nullopt;
  return windows.front().element;
}

// Yields the window that was active, where it is another application's: it becomes active again behind the reading.
std::optional<std::uint32_t> ChromiumMenu::bringToFront() {
  const std::vector<platform::ClientWindow> windows = services_.windows.windows();
  const auto active = std::ranges::find_if(windows, &platform::ClientWindow::isActive);
  const auto own = std::ranges::find(windows, process_, &platform::ClientWindow::pid);
  if (own == windows.end() || (active != windows.end() && active->pid == process_))
    return std::nullopt;
  services_.windows.activate(own->id);
  return active != windows.end() ? std::optional(active->id) : std::nullopt;
}

void ChromiumMenu::close(std::optional<std::uint32_t> windowBefore) {
  // A call that is stopped, or late, closes its menus all the same.
  platform::CallLimits own = limits_;
  own.stop = {};
  own.deadline = own.now() + mostAttempts * closing;
  const platform::CallLimits before = std::exchange(limits_, own);
  shown_.clear();
  for (auto popup = activePopup(); popup; popup = activePopup()) {
    // One press closes the innermost menu.
    services_.keyboard.press(escape, {}, limits_);
    if (!eventually(limits_, closing, [&] { return activePopup() != popup; }))
      break;
  }
  if (windowBefore)
    services_.windows.activate(*windowBefore);
  limits_ = before;
}

void ChromiumMenu::press(const AxeElement& item) {
  // The menus on its way would be opened for nothing.
  if (!item.isEnabled())
    return;
  bringToFront();
  try {
    const AccessibleElement element = onScreen(item).facts().element;
    services_.accessibility.perform(element, 0, limits_);
    shown_.clear();
  } catch (const platform::DesktopFailure&) {
    close(std::nullopt);
    throw;
  }
}

} // namespace tabwright::automation
