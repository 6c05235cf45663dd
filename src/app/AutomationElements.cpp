// An entry's place is a path of positions, as scripts write it. Each call goes down that path anew, from the menu bar
// that the actions on menus read: no element is held between two calls. A path that leads to nothing has no entries
// when it is listed, and is a failure only when it is to be chosen.
#include "app/AutomationElements.h"

#include "automation/AxeApp.h"

#include <optional>

namespace tabwright::app {

using automation::AxeElement;

namespace {

AxeElement menuBarOf(const scripting::DesktopProcess& process, const automation::DesktopServices& services,
                     const platform::CallLimits& limits) {
  automation::AxeApp app(applicationOf(process), services, limits);
  const auto bar = app.menuBar();
  if (!bar)
    throw bar.error();
  return bar->element();
}

std::optional<AxeElement> elementAt(AxeElement element, scripting::MenuPath path) {
  for (const std::size_t position : path) {
    // Reading a menu asks the application, so nothing beside the path is read.
    const std::vector<AxeElement> items = element.items();
    if (position >= items.size())
      return std::nullopt;
    element = items[position];
  }
  return element;
}

} // namespace

targets::RunningApplication applicationOf(const scripting::DesktopProcess& process) {
  return {.bundleIdentifier = process.bundleIdentifier,
          .localizedName = process.name,
          .process = process.pid,
          .isFrontmost = process.isFrontmost};
}

std::vector<scripting::MenuEntry> AutomationElements::menuEntries(const scripting::DesktopProcess& process,
                                                                  scripting::MenuPath path,
                                                                  const platform::CallLimits& limits) {
  const std::optional<AxeElement> element = elementAt(menuBarOf(process, services_, limits), path);
  std::vector<scripting::MenuEntry> entries;
  if (!element)
    return entries;
  for (const AxeElement& each : element->items())
    entries.push_back({each.title(), each.isEnabled(), each.isSubMenu()});
  return entries;
}

void AutomationElements::chooseMenuItem(const scripting::DesktopProcess& process, scripting::MenuPath path,
                                        const platform::CallLimits& limits) {
  const targets::RunningApplication app = applicationOf(process);
  const std::optional<AxeElement> element = elementAt(menuBarOf(process, services_, limits), path);
  const std::optional<automation::AxeMenuItem> item =
      element ? automation::AxeMenuItem::of(app, *element) : std::nullopt;
  if (!item)
    throw platform::failure(engine::AxeError::menuItemNotFound);
  item->press(limits);
}

platform::AccessibleElement AutomationElements::application(const scripting::DesktopProcess& process,
                                                            const platform::CallLimits& limits) {
  return automation::AxeApp(applicationOf(process), services_, limits).element();
}

} // namespace tabwright::app
