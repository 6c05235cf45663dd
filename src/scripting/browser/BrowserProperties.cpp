// Getters read the event's snapshot, setters give the driver a command. A command leaves the event's snapshot as it is:
// its effect shows in the snapshot of the next event.
#include "scripting/browser/BrowserProperties.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Errors.h"
#include "scripting/model/Arguments.h"

#include <algorithm>
#include <vector>

namespace tabwright::scripting {

using applescript::Value;
namespace errors = applescript::errors;

Found applicationFrontmost(BrowserScope& scope, Object) {
  return Value(scope.isFrontmost());
}
Found applicationVersion(BrowserScope& scope, Object) {
  return Value(scope.snapshot().snapshot()->version);
}
Found applicationName(BrowserScope& scope, Object) {
  return Value(scope.root()->application->name());
}
Found applicationRunning(BrowserScope& scope, Object) {
  return Value(scope.driver().isRunning());
}

Found windowIndex(BrowserScope&, Object window) {
  return Value(window.first + 1);
}

void setWindowIndex(BrowserScope& scope, Object window, const Value& value) {
  const auto& windows = scope.snapshot().windows();
  const std::int64_t index = requireInteger(value);
  const auto count = static_cast<std::int64_t>(windows.size());
  // As with elements, negative ones count from the end.
  if (index < -count || index == 0 || index > count)
    throw errors::of(applescript::errorNumber::invalidIndex, "Can’t set index of the window: there is no such index.");
  // A browser can only raise windows. So the wanted order is written down, and all windows down to the target are
  // raised, the hindmost first.
  std::vector<WindowID> order;
  order.reserve(windows.size());
  for (const WindowState& each : windows)
    order.push_back(each.id);
  const auto target = static_cast<std::size_t>(index > 0 ? index - 1 : count + index);
  const WindowID moved = scope.window(window).id;
  order.erase(order.begin() + window.first);
  order.insert(order.begin() + static_cast<std::ptrdiff_t>(target), moved);
  for (std::size_t position = target + 1; position-- > 0;)
    scope.perform(RaiseWindow{order[position]});
}

Found windowName(BrowserScope& scope, Object window) {
  const WindowState& state = scope.window(window);
  return Value(state.givenName.empty() ? state.title : state.givenName);
}

Found windowVisible(BrowserScope& scope, Object window) {
  return Value(!scope.window(window).isMinimized);
}

void setWindowVisible(BrowserScope& scope, Object window, const Value& value) {
  // No browser hides a single window: the nearest thing to being invisible is to be minimised.
  scope.perform(
      SetShape{scope.window(window).id, requireBoolean(value) ? WindowShape::normal : WindowShape::minimized});
}

Found windowMinimized(BrowserScope& scope, Object window) {
  return Value(scope.window(window).isMinimized);
}

void setWindowMinimized(BrowserScope& scope, Object window, const Value& value) {
  setWindowVisible(scope, window, Value(!requireBoolean(value)));
}

Found windowZoomed(BrowserScope& scope, Object window) {
  return Value(scope.window(window).isFullScreen);
}

void setWindowZoomed(BrowserScope& scope, Object window, const Value& value) {
  scope.perform(
      SetShape{scope.window(window).id, requireBoolean(value) ? WindowShape::fullScreen : WindowShape::normal});
}

Found windowBounds(BrowserScope& scope, Object window) {
  const WindowBounds& bounds = scope.window(window).bounds;
  return Value::list({bounds.left, bounds.top, bounds.left + bounds.width, bounds.top + bounds.height});
}

WindowBounds requireBounds(const Value& value) {
  const auto* list = value.get<Value::ListPointer>();
  if (list == nullptr || (*list)->items.size() != 4)
    throw errors::cannotMake(value, "bounding rectangle");
  std::vector<int> edges;
  for (const Value& edge : (*list)->items)
    // Clamped, so that the differences below stay within an int.
    edges.push_back(static_cast<int>(std::clamp<std::int64_t>(requireInteger(edge), -1'000'000, 1'000'000)));
  return {edges[0], edges[1], edges[2] - edges[0], edges[3] - edges[1]};
}

void setWindowBounds(BrowserScope& scope, Object window, const Value& value) {
  scope.perform(SetBounds{scope.window(window).id, requireBounds(value)});
}

Found always(BrowserScope&, Object) {
  return Value(true);
}

Found tabURL(BrowserScope& scope, Object tab) {
  return Value(scope.tab(tab).url);
}

void setTabURL(BrowserScope& scope, Object tab, const Value& value) {
  scope.perform(Navigate{scope.tab(tab).id, requireText(value)});
}

Found tabTitle(BrowserScope& scope, Object tab) {
  return Value(scope.tab(tab).title);
}

std::size_t countTabs(BrowserScope& scope, Object window) {
  return scope.window(window).tabs.size();
}

TabID openTab(BrowserScope& scope, Object window, std::optional<std::size_t> position, const std::string& url) {
  return scope.perform(MakeTab{scope.window(window).id, position, url});
}

} // namespace tabwright::scripting
