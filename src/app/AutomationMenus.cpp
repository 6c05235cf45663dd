#include "app/AutomationMenus.h"

#include "automation/AxeApp.h"

#include <optional>

namespace tabwright::app {

using automation::AxeElement;

namespace {

targets::RunningApplication applicationOf(const scripting::DesktopProcess& process) {
  return {.bundleIdentifier = process.bundleIdentifier,
          .localizedName = process.name,
          .process = process.pid,
          .isFrontmost = process.isFrontmost};
}

AxeElement menuBarOf(const scripting::DesktopProcess& process, const automation::DesktopServices& services,
                     const platform::CallLimits& limits) {
  automation::AxeApp app(applicationOf(process), services, limits);
  const auto bar = app.menuBar();
  if (!bar)
    throw bar.error();
  return bar->element();
}

/// Entries of a menu bar, or of the menu that an item opens.
std::vector<AxeElement> entriesOf(const AxeElement& element) {
  std::vector<AxeElement> children = element.children();
  return element.isItem() && children.size() == 1 ? children.front().children() : children;
}

std::optional<AxeElement> elementAt(AxeElement element, scripting::MenuPath path) {
  for (const std::size_t position : path) {
    const std::vector<AxeElement> entries = entriesOf(element);
    if (position >= entries.size())
      return std::nullopt;
    element = entries[position];
  }
  return element;
}

} // namespace

std::vector<scripting::MenuEntry> AutomationMenus::menuEntries(const scripting::DesktopProcess& process,
                                                               scripting::MenuPath path,
                                                               const platform::CallLimits& limits) {
  const std::optional<AxeElement> element = elementAt(menuBarOf(process, services_, limits), path);
  std::vector<scripting::MenuEntry> entries;
  if (!element)
    return entries;
  for (const AxeElement& each : entriesOf(*element))
    entries.push_back({each.title(), each.isEnabled(), each.isSubMenu()});
  return entries;
}

void AutomationMenus::chooseMenuItem(const scripting::DesktopProcess& process, scripting::MenuPath path,
                                     const platform::CallLimits& limits) {
  const targets::RunningApplication app = applicationOf(process);
  const std::optional<AxeElement> element = elementAt(menuBarOf(process, services_, limits), path);
  const std::optional<automation::AxeMenuItem> item =
      element ? automation::AxeMenuItem::of(app, *element) : std::nullopt;
  if (!item)
    throw platform::failure(engine::AxeError::menuItemNotFound);
  item->press(limits);
}

} // namespace tabwright::app
