// A path search goes down item by item. A title search reads all menus first, a level of all of them in one go, and
// then walks the tree in memory.
#include "automation/AxeMenuBar.h"

#include "automation/MenuPath.h"
#include "automation/MenuSource.h"
#include "automation/MenuTree.h"
#include "automation/NearestTitles.h"
#include "platform/Whitespace.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace tabwright::automation {

using engine::AxeError;

namespace {

// The first in the order of a reader who goes from the top down, into each menu as it comes. The walk knows what is a
// submenu from the tree alone, so nothing is asked of the application.
const AxeElement* firstFitting(const MenuTree& tree, TitlePattern& pattern) {
  if (pattern.isTitle(tree.element.title()))
    return &tree.element;
  for (const MenuTree& item : tree.subItems()) {
    if (pattern.fits(item.element.title()))
      return &item.element;
    if (!item.isSubMenu())
      continue;
    if (const AxeElement* below = firstFitting(item, pattern))
      return below;
  }
  return nullptr;
}

} // namespace

std::optional<AxeMenuBar> AxeMenuBar::of(const targets::RunningApplication& app, const AxeElement& element) {
  if (element.role() != axerole::menuBar)
    return std::nullopt;
  return AxeMenuBar(app, element);
}

MenuItemResult AxeMenuBar::menuItem(std::span<const std::string> pathSegments, TitleCase titleCase) const {
  std::vector<AxeElement> level = element_.items();
  if (level.empty() || pathSegments.empty())
    return std::unexpected(notFound({}));
  for (std::size_t depth = 0;; ++depth) {
    const TitlePattern pattern(pathSegments[depth], StringFilterEnum::isExactly, titleCase);
    const auto item =
        std::ranges::find_if(level, [&](const AxeElement& each) { return pattern.isTitle(each.title()); });
    if (item == level.end())
      return std::unexpected(notFound(missingInMenu(pathSegments.first(depth), pathSegments[depth], level)));
    if (depth + 1 == pathSegments.size())
      return found(*item);
    level = AxeElement(*item).items();
  }
}

MenuItemResult AxeMenuBar::menuItem(std::string_view title, StringFilterEnum filter, TitleCase titleCase) const {
  // A separator has an empty title, and every text contains an empty one: neither is meant.
  if (platform::isBlank(title))
    return std::unexpected(notFound({}));
  TitlePattern pattern(title, filter, titleCase);
  const MenuTree tree = readMenuTree(element_);
  for (const MenuTree& item : tree.children) {
    if (const AxeElement* element = firstFitting(item, pattern))
      return found(*element);
  }
  return std::unexpected(notFound(missingInMenus(title, tree)));
}

MenuItemResult AxeMenuBar::found(const AxeElement& element) const {
  auto item = AxeMenuItem::of(app_, element);
  if (!item)
    return std::unexpected(notFound({}));
  return std::move(*item);
}

engine::AxeFailure AxeMenuBar::notFound(const std::string& sentence) const {
  engine::AxeFailure failure = platform::failure(AxeError::menuItemNotFound);
  // Menus that couldn't be read may well hold the item: that is told rather than the nearest titles.
  if (const auto& unread = element_.facts().source->failure())
    failure.setCause(unread);
  else if (!sentence.empty())
    failure.setCause(platform::Notice{engine::identity(AxeError::menuItemNotFound), sentence});
  return failure;
}

} // namespace tabwright::automation
