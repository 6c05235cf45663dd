// Name, description, role and states were read with the element and are answered from the tree; place, value and text
// are asked for one by one, when a script wants them. What the window system knows of a window is answered from there,
// so that a window can be placed and closed whose application shows nothing of itself.
#include "scripting/systemevents/UIElementProperties.h"

#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"
#include "scripting/model/Arguments.h"
#include "scripting/systemevents/UIElementClasses.h"

#include <string>
#include <tuple>
#include <utility>

namespace tabwright::scripting {

using applescript::Value;
using platform::AccessibleFacts;
using platform::AccessibleState;
using ValueForm = UIElementRole::ValueForm;

namespace {

const UIElementTree::Node& nodeOf(EventScope& scope, Object object) {
  return systemEvents(scope).tree().node(object.first);
}

const DesktopWindow* windowOf(EventScope& scope, Object object) {
  return nodeOf(scope, object).window;
}

bool isIn(EventScope& scope, Object object, AccessibleState state) {
  const AccessibleFacts& facts = nodeOf(scope, object).facts;
  return facts.states && facts.states->has(state);
}

bool isChecked(EventScope& scope, Object object) {
  // The tab in front is a checked radio button on the Mac, and a selected one in AT-SPI.
  const bool isTab = nodeOf(scope, object).role->subrole == "AXTabButton";
  return isIn(scope, object, AccessibleState::checked) || (isTab && isIn(scope, object, AccessibleState::selected));
}

Value textOrMissing(std::string_view text) {
  return text.empty() ? Value::missing() : Value(text);
}

Value pair(int first, int second) {
  return Value::list({Value(std::int64_t{first}), Value(std::int64_t{second})});
}

/// Names the element as a script would, so that the error reads like the script's own words.
[[noreturn]] void refuse(EventScope& scope, Object object, applescript::FourCharCode property, const Value& value) {
  throw applescript::errors::cannotSet(*applescript::propertyOf(object.type->specifier(scope, object), property), value,
                                       systemEventsTerminology());
}

/// The window system moves windows; nothing moves the elements in them.
const DesktopWindow& requireWindow(EventScope& scope, Object object, applescript::FourCharCode property,
                                   const Value& value) {
  const DesktopWindow* window = windowOf(scope, object);
  if (!window)
    refuse(scope, object, property, value);
  return *window;
}

} // namespace

namespace uielement {

std::pair<int, int> requirePair(const Value& value) {
  const auto* list = value.get<Value::ListPointer>();
  if (!list || (*list)->items.size() != 2)
    throw applescript::errors::cannotMake(value, "list of two numbers");
  return {static_cast<int>(requireInteger((*list)->items[0])), static_cast<int>(requireInteger((*list)->items[1]))};
}

std::optional<platform::Rectangle> placeOf(EventScope& scope, Object object) {
  if (const DesktopWindow* window = windowOf(scope, object))
    return window->place;
  return systemEvents(scope).tree().read(object.first, {.extents = true}).extents;
}

Found name(EventScope& scope, Object object) {
  if (const DesktopWindow* window = windowOf(scope, object))
    return Value(window->name);
  return textOrMissing(nodeOf(scope, object).facts.name.value_or(""));
}

Found accessibilityDescription(EventScope& scope, Object object) {
  return textOrMissing(nodeOf(scope, object).facts.description.value_or(""));
}

Found description(EventScope& scope, Object object) {
  const std::string told = nodeOf(scope, object).facts.description.value_or("");
  return told.empty() ? roleDescription(scope, object) : Found(Value(told));
}

Found role(EventScope& scope, Object object) {
  const UIElementTree::Node& node = nodeOf(scope, object);
  if (node.window)
    return Value(node.window->dialogOf != 0 ? "AXSheet" : "AXWindow");
  return Value(node.role->role);
}

Found subrole(EventScope& scope, Object object) {
  const UIElementTree::Node& node = nodeOf(scope, object);
  if (node.window)
    return Value(node.window->dialogOf != 0 ? "AXDialog" : "AXStandardWindow");
  return textOrMissing(node.role->subrole);
}

Found roleDescription(EventScope&, Object object) {
  return Value(object.type->words);
}

Found isEnabled(EventScope& scope, Object object) {
  return Value(windowOf(scope, object) ||
               (isIn(scope, object, AccessibleState::enabled) && isIn(scope, object, AccessibleState::sensitive)));
}

Found isFocused(EventScope& scope, Object object) {
  const DesktopWindow* window = windowOf(scope, object);
  return Value(window ? window->isActive : isIn(scope, object, AccessibleState::focused));
}

Found isSelected(EventScope& scope, Object object) {
  return Value(isIn(scope, object, AccessibleState::selected));
}

Found value(EventScope& scope, Object object) {
  const UIElementTree::Node& node = nodeOf(scope, object);
  if (node.window)
    return Value::missing();
  switch (node.role->value) {
  case ValueForm::none:
    return Value::missing();
  case ValueForm::checked:
    return Value(std::int64_t{isChecked(scope, object)});
  case ValueForm::number: {
    const AccessibleFacts told = systemEvents(scope).tree().read(object.first, {.value = true});
    return told.value ? Value(*told.value) : Value::missing();
  }
  case ValueForm::text:
    break;
  }
  const AccessibleFacts told = systemEvents(scope).tree().read(object.first, {.text = true});
  // Labels without a text of their own show their name.
  return Value(told.text.value_or(node.facts.name.value_or("")));
}

void setValue(EventScope& scope, Object object, const Value& to) {
  const UIElementTree::Node& node = nodeOf(scope, object);
  platform::Accessibility& accessibility = systemEvents(scope).desktop().elements().accessibility();
  // Windows have no role here, and no value.
  switch (node.window ? ValueForm::none : node.role->value) {
  case ValueForm::checked: {
    // Scripts give a truth, or 1 and 0 as they have read it.
    const bool wanted = to.get<bool>() ? requireBoolean(to) : requireInteger(to) != 0;
    // AT-SPI can't set a check, only press, which turns it over.
    if (wanted != isChecked(scope, object))
      performUIElementAction(systemEvents(scope), object, "AXPress");
    return;
  }
  case ValueForm::text:
    accessibility.setText(node.element, requireText(to), systemEvents(scope).limits());
    return;
  case ValueForm::number:
    accessibility.setValue(node.element, applescript::realOf(to), systemEvents(scope).limits());
    return;
  case ValueForm::none:
    break;
  }
  refuse(scope, object, systemevents::value, to);
}

void setFocused(EventScope& scope, Object object, const Value& to) {
  if (!requireBoolean(to))
    return; // an element loses the keyboard when another gets it
  const UIElementTree::Node& node = nodeOf(scope, object);
  if (node.window)
    systemEvents(scope).desktop().raise(node.window->id);
  else
    systemEvents(scope).desktop().elements().accessibility().focus(node.element, systemEvents(scope).limits());
}

Found position(EventScope& scope, Object object) {
  const auto place = placeOf(scope, object);
  return place ? pair(place->x, place->y) : Value::missing();
}

Found size(EventScope& scope, Object object) {
  const auto place = placeOf(scope, object);
  return place ? pair(place->width, place->height) : Value::missing();
}

void setPosition(EventScope& scope, Object object, const Value& to) {
  const DesktopWindow& window = requireWindow(scope, object, systemevents::position, to);
  // The window system moves and sizes in one: the size is sent along as the event has found it.
  platform::Rectangle place = window.place;
  std::tie(place.x, place.y) = requirePair(to);
  systemEvents(scope).desktop().place(window.id, place);
}

void setSize(EventScope& scope, Object object, const Value& to) {
  const DesktopWindow& window = requireWindow(scope, object, systemevents::size, to);
  platform::Rectangle place = window.place;
  std::tie(place.width, place.height) = requirePair(to);
  systemEvents(scope).desktop().place(window.id, place);
}

} // namespace uielement

namespace {

Found isMinimised(EventScope& scope, Object window) {
  return Value(!windowOf(scope, window)->isShown);
}
void setMinimised(EventScope& scope, Object window, const Value& to) {
  systemEvents(scope).desktop().setShown(windowOf(scope, window)->id,
                                         requireBoolean(to) ? Visibility::hidden : Visibility::shown);
}

Found isFullScreen(EventScope& scope, Object window) {
  return Value(windowOf(scope, window)->isFullScreen);
}
void setFullScreen(EventScope& scope, Object window, const Value& to) {
  systemEvents(scope).desktop().setFullScreen(windowOf(scope, window)->id, requireBoolean(to));
}

/// The front window of its process.
Found isMain(EventScope& scope, Object object) {
  const UIElementTree::Node& node = nodeOf(scope, object);
  return Value(node.window == &node.process->windows.front());
}

Found isModal(EventScope& scope, Object window) {
  return Value(windowOf(scope, window)->dialogOf != 0);
}

constexpr AttributeRow attributes[]{
    {"AXRole", uielement::role},
    {"AXSubrole", uielement::subrole},
    {"AXRoleDescription", uielement::roleDescription},
    {"AXTitle", uielement::name},
    {"AXDescription", uielement::accessibilityDescription},
    {"AXValue", uielement::value, uielement::setValue},
    {"AXEnabled", uielement::isEnabled},
    {"AXFocused", uielement::isFocused, uielement::setFocused},
    {"AXSelected", uielement::isSelected},
    {"AXPosition", uielement::position, uielement::setPosition},
    {"AXSize", uielement::size, uielement::setSize},
    {"AXMinimized", isMinimised, setMinimised},
    {"AXFullScreen", isFullScreen, setFullScreen},
    {"AXMain", isMain, uielement::setFocused},
    {"AXModal", isModal},
};
// The last ones; elements that aren't windows have only those before them.
constexpr std::size_t ofWindows = 4;
static_assert(attributes[std::size(attributes) - ofWindows].name == "AXMinimized");

} // namespace

std::span<const AttributeRow> uiElementAttributes() {
  return attributes;
}

std::size_t windowAttributeCount() {
  return ofWindows;
}

} // namespace tabwright::scripting
