#include "automation/AxeMenuItem.h"

#include "automation/MenuPath.h"
#include "automation/MenuSource.h"
#include "platform/DesktopFault.h"
#include "platform/Notices.h"
#include "platform/Whitespace.h"

#include <algorithm>

namespace tabwright::automation {

namespace {

std::vector<std::string> segmentsOf(const AxeElement& item) {
  std::vector<std::string> segments{item.title()};
  // Menus between the items mostly have no title of their own, so only what can be told to a user stays.
  for (auto parent = item.parent(); parent && parent->isMenu(); parent = parent->parent()) {
    if (const std::string title = parent->title(); !platform::isBlank(title))
      segments.push_back(title);
  }
  std::ranges::reverse(segments);
  return segments;
}

} // namespace

std::optional<AxeMenuItem> AxeMenuItem::of(const targets::RunningApplication& app, const AxeElement& element) {
  if (!element.isMenu())
    return std::nullopt;
  std::vector<std::string> segments = segmentsOf(element);
  std::string path = pathOf(segments);
  return AxeMenuItem{app, element, std::move(segments), std::move(path), element.isSubMenu()};
}

void AxeMenuItem::press(const platform::CallLimits& limits) const {
  // On the Mac an item with a submenu gets AXPick before AXPress. Here the first of them opens the menu, and the second
  // would close it again.
  try {
    element.facts().source->press(element);
  } catch (const platform::DesktopFailure& failure) {
    if (failure.kind() == platform::DesktopFault::stopped)
      throw;
    platform::giveNotice(limits, platform::asCause(failure));
  }
}

} // namespace tabwright::automation
