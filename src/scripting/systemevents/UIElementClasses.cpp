// The classes of all kinds of elements are made at compile time from `uiElementKinds`; they share their properties and
// differ in code and words only. An element's class is that of its role, so the elements of one class are picked from
// the container's children, which are read once. Answers name an element by its name where that tells it from the
// others of its class, since positions shift when an application changes.
#include "scripting/systemevents/UIElementClasses.h"

#include "scripting/model/Comparison.h"
#include "scripting/systemevents/AttributeClass.h"
#include "scripting/systemevents/SystemEventsTerminology.h"
#include "scripting/systemevents/UIElementProperties.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::SpecifierPointer;
using applescript::Value;
using Number = UIElementTree::Number;

namespace {

constexpr std::size_t kindCount = uiElementKinds.size();

extern const ObjectClass sheetClass;
extern const ObjectClass actionClass;

UIElementTree& tree(EventScope& scope) {
  return systemEvents(scope).tree();
}

/// The object of a node: its class follows from what the node is.
Object objectOf(EventScope& scope, Number number) {
  const UIElementTree::Node& node = tree(scope).node(number);
  if (node.window)
    return {node.window->dialogOf != 0 ? &sheetClass : &systemWindowClass, number};
  return {&uiElementClasses[node.role->kind], number};
}

/// Position among the elements of a list that are of the same class, from 1.
template <class Numbers>
std::int64_t indexAmong(EventScope& scope, const Numbers& siblings, Object object) {
  std::int64_t index = 0;
  for (const Number sibling : siblings) {
    index += objectOf(scope, sibling).type == object.type ? 1 : 0;
    // Those behind it don't count.
    if (sibling == object.first)
      break;
  }
  return index;
}

/// To compare each with each takes too long beyond this.
constexpr std::size_t mostToCompare = 300;

bool isOnlyOneOfItsName(EventScope& scope, const std::vector<Number>& siblings, Object object) {
  const auto name = [&](Number number) { return tree(scope).node(number).facts.name.value_or(""); };
  const std::string own = name(object.first);
  return !own.empty() && siblings.size() <= mostToCompare && std::ranges::none_of(siblings, [&](Number sibling) {
    return sibling != object.first && objectOf(scope, sibling).type == object.type &&
           sameIgnoringCase(name(sibling), own);
  });
}

std::vector<const DesktopWindow*> mainWindows(const DesktopProcess& process) {
  std::vector<const DesktopWindow*> windows;
  for (const DesktopWindow& window : process.windows) {
    if (window.dialogOf == 0)
      windows.push_back(&window);
  }
  return windows;
}

Object windowObject(EventScope& scope, Object process, const DesktopWindow& window) {
  return objectOf(scope, tree(scope).window(systemEvents(scope).process(process), process.first, window));
}

/// From 1, among those of its process.
std::int64_t windowNumber(EventScope& scope, Object window) {
  const UIElementTree::Node& node = tree(scope).node(window.first);
  const auto windows = mainWindows(*node.process);
  return std::ranges::find(windows, node.window) - windows.begin() + 1;
}

SpecifierPointer windowSpecifier(EventScope& scope, Object window) {
  const std::int64_t process = tree(scope).node(window.first).processPosition;
  return applescript::elementByIndex(processSpecifierAt(scope, process), fourCharCode("cwin"),
                                     windowNumber(scope, window));
}

SpecifierPointer sheetSpecifier(EventScope& scope, Object sheet) {
  const UIElementTree::Node& node = tree(scope).node(sheet.first);
  // There is one: processes come without dialogs of windows that aren't theirs.
  const auto owner = std::ranges::find(node.process->windows, node.window->dialogOf, &DesktopWindow::id);
  const Object window = windowObject(scope, {nullptr, node.processPosition}, *owner);
  return applescript::elementByIndex(window.type->specifier(scope, window), systemevents::sheet,
                                     indexAmong(scope, tree(scope).sheets(window.first), sheet));
}

/// By its name where that tells it from the others of its class, else by its position among them.
SpecifierPointer elementSpecifier(EventScope& scope, Object element) {
  const UIElementTree::Node& node = tree(scope).node(element.first);
  const Object container = objectOf(scope, *node.parent);
  SpecifierPointer parent = container.type->specifier(scope, container);
  const std::vector<Number>& siblings = tree(scope).children(*node.parent);
  // All children are of the wider class, and count for its positions.
  if (element.type == &uiElementClasses[0]) {
    const auto at = std::ranges::find(siblings, element.first);
    return applescript::elementByIndex(std::move(parent), element.type->code, at - siblings.begin() + 1);
  }
  if (isOnlyOneOfItsName(scope, siblings, element))
    return applescript::elementByName(std::move(parent), element.type->code, *node.facts.name);
  return applescript::elementByIndex(std::move(parent), element.type->code, indexAmong(scope, siblings, element));
}

// -------------------------------------------------------------- elements

/// Of one class; of the wider one all are.
template <std::size_t kind>
bool isOfKind(EventScope& scope, Number number) {
  return kind == 0 || objectOf(scope, number).type == &uiElementClasses[kind];
}

template <std::size_t kind>
std::size_t elementCount(EventScope& scope, Object container) {
  const std::vector<Number>& children = tree(scope).children(container.first);
  return static_cast<std::size_t>(
      std::ranges::count_if(children, [&](Number each) { return isOfKind<kind>(scope, each); }));
}

template <std::size_t kind>
Object elementAt(EventScope& scope, Object container, std::size_t position) {
  for (const Number each : tree(scope).children(container.first)) {
    if (isOfKind<kind>(scope, each) && position-- == 0)
      return objectOf(scope, each);
  }
  return container; // not reached: `position` is below `count`
}

std::size_t sheetCount(EventScope& scope, Object container) {
  return tree(scope).sheets(container.first).size();
}

Object sheetAt(EventScope& scope, Object container, std::size_t position) {
  return objectOf(scope, tree(scope).sheets(container.first)[position]);
}

// ------------------------------------------------ attributes and actions

Object ownerOf(EventScope& scope, Object object) {
  return objectOf(scope, object.first);
}

struct ElementOwners {
  static std::span<const AttributeRow> rows() { return uiElementAttributes(); }
  static Object of(EventScope& scope, Object attribute) { return ownerOf(scope, attribute); }
};
using ElementAttributes = AttributeClass<ElementOwners>;

std::size_t attributeCount(EventScope& scope, Object owner) {
  return uiElementAttributes().size() - (tree(scope).node(owner.first).window ? 0 : windowAttributeCount());
}

const UIElementAction& action(EventScope& scope, Object object) {
  return tree(scope).actions(object.first)[static_cast<std::size_t>(object.second)];
}

std::size_t actionCount(EventScope& scope, Object owner) {
  return tree(scope).actions(owner.first).size();
}

Object actionAt(EventScope&, Object owner, std::size_t position) {
  return {&actionClass, owner.first, static_cast<std::int64_t>(position)};
}

Found actionName(EventScope& scope, Object object) {
  return Value(action(scope, object).name);
}

SpecifierPointer actionSpecifier(EventScope& scope, Object object) {
  const Object owner = ownerOf(scope, object);
  return applescript::elementByName(owner.type->specifier(scope, owner), systemevents::action,
                                    action(scope, object).name);
}

constexpr PropertyRow actionProperties[]{{fourCharCode("pnam"), actionName}, {systemevents::description, actionName}};

constinit const ObjectClass actionClass{systemevents::action, "action", actionProperties, {}, actionSpecifier};

// --------------------------------------------------------------- classes

template <std::size_t... kinds>
consteval auto rowsOf(std::index_sequence<kinds...>) {
  return std::array{
      ElementRow{&uiElementClasses[kinds], elementCount<kinds>, elementAt<kinds>}...,
      ElementRow{&sheetClass, sheetCount, sheetAt},
      ElementRow{&ElementAttributes::type, attributeCount, ElementAttributes::at},
      ElementRow{&actionClass, actionCount, actionAt},
  };
}
constexpr auto elementRows = rowsOf(std::make_index_sequence<kindCount>());

Found entireContents(EventScope& scope, Object container) {
  std::vector<Found> all;
  for (const Number each : tree(scope).everythingIn(container.first))
    all.emplace_back(objectOf(scope, each));
  return all;
}

/// The properties of all elements, behind some that a class has of its own.
template <std::size_t count>
consteval auto withCommonProperties(const std::array<PropertyRow, count>& own) {
  std::array<PropertyRow, count + uiElementProperties.size() + 1> rows{};
  auto end = std::ranges::copy(own, rows.begin()).out;
  end = std::ranges::copy(uiElementProperties, end).out;
  *end = {systemevents::entireContents, entireContents, nullptr, false};
  return rows;
}

Found windowIndex(EventScope& scope, Object window) {
  return Value(windowNumber(scope, window));
}

constexpr auto elementProperties = withCommonProperties(std::array<PropertyRow, 0>{});
constexpr auto windowProperties = withCommonProperties(std::array{PropertyRow{fourCharCode("pidx"), windowIndex}});

template <std::size_t... kinds>
consteval std::array<ObjectClass, kindCount> classesOf(std::index_sequence<kinds...>) {
  return {ObjectClass{uiElementKinds[kinds].code, uiElementKinds[kinds].words, elementProperties, elementRows,
                      elementSpecifier}...};
}

constinit const ObjectClass sheetClass{systemevents::sheet, "sheet", elementProperties, elementRows, sheetSpecifier};

} // namespace

constinit const std::array<ObjectClass, kindCount> uiElementClasses = classesOf(std::make_index_sequence<kindCount>());

constinit const ObjectClass systemWindowClass{fourCharCode("cwin"), "window", windowProperties, elementRows,
                                              windowSpecifier};

std::size_t systemWindowCount(EventScope& scope, Object process) {
  return mainWindows(systemEvents(scope).process(process)).size();
}

Object systemWindowAt(EventScope& scope, Object process, std::size_t position) {
  return windowObject(scope, process, *mainWindows(systemEvents(scope).process(process))[position]);
}

std::optional<Object> systemWindowByName(EventScope& scope, Object process, std::string_view name) {
  const std::vector<DesktopWindow>& windows = systemEvents(scope).process(process).windows;
  const auto found =
      std::ranges::find_if(windows, [&](const DesktopWindow& each) { return sameIgnoringCase(each.name, name); });
  return found != windows.end() ? std::optional(windowObject(scope, process, *found)) : std::nullopt;
}

SpecifierPointer processSpecifierAt(EventScope& scope, std::int64_t position) {
  const DesktopProcess& process = systemEvents(scope).processes().at(static_cast<std::size_t>(position));
  return applescript::elementByID(scope.root(), systemevents::applicationProcess,
                                  Value(static_cast<std::int64_t>(process.pid)));
}

bool isUIElement(Object object) {
  // All kinds share this function and nothing else has it, so their classes needn't be searched.
  return object.type->specifier == elementSpecifier || object.type == &systemWindowClass || object.type == &sheetClass;
}

bool isUIElementAction(Object object) {
  return object.type == &actionClass;
}

bool performUIElementAction(SystemEventsScope& scope, Object element, std::string_view name) {
  const std::vector<UIElementAction>& actions = scope.tree().actions(element.first);
  const auto found = std::ranges::find(actions, name, &UIElementAction::name);
  if (found == actions.end())
    return false;
  const UIElementTree::Node& node = scope.tree().node(element.first);
  // The window system raises it, whatever the application shows of itself.
  if (node.window)
    scope.desktop().raise(node.window->id);
  else
    scope.desktop().elements().accessibility().perform(node.element, found->position, scope.limits());
  return true;
}

void performUIElementAction(SystemEventsScope& scope, Object action) {
  performUIElementAction(scope, ownerOf(scope, action), scripting::action(scope, action).name);
}

} // namespace tabwright::scripting
