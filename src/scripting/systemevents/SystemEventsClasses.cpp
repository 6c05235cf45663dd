// The object tree of System Events: processes contain windows and one menu bar; the menu bar contains menu bar items,
// and each entry that opens a menu contains that one menu, which contains menu items. A menu bar's own menus are those
// of its items. Everything below the menu bar is named by its path of positions.
#include "scripting/systemevents/SystemEventsClasses.h"

#include "platform/DesktopFault.h"
#include "scripting/model/Arguments.h"
#include "scripting/model/Comparison.h"
#include "scripting/systemevents/AttributeClass.h"
#include "scripting/systemevents/SystemEventsScope.h"
#include "scripting/systemevents/SystemEventsTerminology.h"
#include "scripting/systemevents/UIElementClasses.h"

#include <algorithm>

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::SpecifierPointer;
using applescript::Value;

namespace {

using Path = std::vector<std::size_t>;

template <auto Get>
constexpr auto get = reading<SystemEventsScope, Get>;
template <auto Set>
constexpr auto put = writing<SystemEventsScope, Set>;

std::int64_t signedPosition(std::size_t position) {
  return static_cast<std::int64_t>(position);
}

SpecifierPointer processSpecifier(EventScope& scope, Object object) {
  return processSpecifierAt(scope, object.first);
}

// ----------------------------------------------------------------- menus

// Items contain menus, and these contain items: both are declared before either is made.
extern const ObjectClass menuClass;
extern const ObjectClass menuItemClass;

Found entryName(SystemEventsScope& scope, Object entry) {
  return Value(scope.entry(entry).name);
}
Found entryEnabled(SystemEventsScope& scope, Object entry) {
  return Value(scope.entry(entry).isEnabled);
}

SpecifierPointer menuBarSpecifier(EventScope& scope, Object object) {
  return applescript::elementByIndex(processSpecifier(scope, object), systemevents::menuBar, 1);
}

/// `menu item 2 of menu 1 of menu bar item 3 of menu bar 1 of process`, from the path outwards.
SpecifierPointer entrySpecifier(EventScope& scope, Object object) {
  SpecifierPointer specifier = menuBarSpecifier(scope, object);
  bool isOnBar = true;
  for (const std::size_t position : systemEvents(scope).path(object)) {
    const auto code = isOnBar ? systemevents::menuBarItem : systemevents::menuItem;
    // The one menu that the entry before opens.
    if (!isOnBar)
      specifier = applescript::elementByIndex(specifier, systemevents::menu, 1);
    specifier = applescript::elementByIndex(specifier, code, signedPosition(position) + 1);
    isOnBar = false;
  }
  return specifier;
}

SpecifierPointer menuSpecifier(EventScope& scope, Object menu) {
  return applescript::elementByIndex(entrySpecifier(scope, menu), systemevents::menu, 1);
}

std::size_t entryCount(EventScope& scope, Object container) {
  // Reads the menu, the first time that the event asks.
  return systemEvents(scope).entries(container, systemEvents(scope).path(container)).size();
}

template <const ObjectClass& type>
Object entryAt(EventScope& scope, Object container, std::size_t position) {
  Path path = systemEvents(scope).path(container);
  path.push_back(position);
  return {&type, container.first, systemEvents(scope).numberOf(path)};
}

std::size_t ownMenuCount(EventScope& scope, Object entry) {
  return systemEvents(scope).entry(entry).hasMenu ? 1 : 0;
}

Object ownMenu(EventScope&, Object entry, std::size_t) {
  return {&menuClass, entry.first, entry.second};
}

constexpr PropertyRow entryProperties[]{
    {fourCharCode("pnam"), get<entryName>},
    {systemevents::enabled, get<entryEnabled>},
};

constexpr ElementRow entryElements[]{{&menuClass, ownMenuCount, ownMenu}};
constexpr ElementRow menuElements[]{{&menuItemClass, entryCount, entryAt<menuItemClass>}};

constinit const ObjectClass menuClass{systemevents::menu, "menu", entryProperties, menuElements, menuSpecifier};
constinit const ObjectClass menuItemClass{systemevents::menuItem, "menu item", entryProperties, entryElements,
                                          entrySpecifier};
constinit const ObjectClass menuBarItemClass{systemevents::menuBarItem, "menu bar item", entryProperties, entryElements,
                                             entrySpecifier};

Object menuOfBarItem(EventScope& scope, Object bar, std::size_t position) {
  // A menu is told by the path of the entry that opens it.
  return {&menuClass, bar.first, entryAt<menuBarItemClass>(scope, bar, position).second};
}

constexpr ElementRow menuBarElements[]{
    {&menuBarItemClass, entryCount, entryAt<menuBarItemClass>},
    {&menuClass, entryCount, menuOfBarItem},
};

// `menu 2 of menu bar 1` is the menu of the second item, by the same count.
constinit const ObjectClass menuBarClass{systemevents::menuBar, "menu bar", {}, menuBarElements, menuBarSpecifier};

// ------------------------------------------------------------- processes

Found processName(SystemEventsScope& scope, Object process) {
  return Value(scope.process(process).name);
}
Found processBundleID(SystemEventsScope& scope, Object process) {
  return Value(scope.process(process).bundleIdentifier);
}
Found processPID(SystemEventsScope& scope, Object process) {
  return Value(static_cast<std::int64_t>(scope.process(process).pid));
}
Found processFrontmost(SystemEventsScope& scope, Object process) {
  return Value(scope.process(process).isFrontmost);
}
Found processVisible(SystemEventsScope& scope, Object process) {
  return Value(scope.process(process).isVisible);
}
// Processes without windows aren't listed, except browsers.
Found processBackgroundOnly(SystemEventsScope&, Object) {
  return Value(false);
}

void setProcessFrontmost(SystemEventsScope& scope, Object process, const Value& value) {
  // Another application has to come to the front for this one to leave it, so `false` does nothing.
  if (requireBoolean(value))
    scope.desktop().activate(scope.process(process).pid);
}

void setProcessVisible(SystemEventsScope& scope, Object process, const Value& value) {
  scope.desktop().setVisible(scope.process(process).pid,
                             requireBoolean(value) ? Visibility::shown : Visibility::hidden);
}

Found processRole(SystemEventsScope&, Object) {
  return Value("AXApplication");
}
Found processHidden(SystemEventsScope& scope, Object process) {
  return Value(!scope.process(process).isVisible);
}
void setProcessHidden(SystemEventsScope& scope, Object process, const Value& value) {
  setProcessVisible(scope, process, Value(!requireBoolean(value)));
}
Found processFrontWindow(SystemEventsScope& scope, Object process) {
  return systemWindowCount(scope, process) > 0 ? Found(systemWindowAt(scope, process, 0)) : Found(Value::missing());
}

// The main window and the focused one are the front window here.
constexpr AttributeRow processAttributes[]{
    {"AXRole", get<processRole>},
    {"AXTitle", get<processName>},
    {"AXFrontmost", get<processFrontmost>, put<setProcessFrontmost>},
    {"AXHidden", get<processHidden>, put<setProcessHidden>},
    {"AXMainWindow", get<processFrontWindow>},
    {"AXFocusedWindow", get<processFrontWindow>},
};

constexpr PropertyRow processProperties[]{
    {fourCharCode("pnam"), get<processName>},
    {systemevents::bundleIdentifier, get<processBundleID>},
    {fourCharCode("ID  "), get<processPID>},
    {systemevents::unixID, get<processPID>},
    {fourCharCode("pisf"), get<processFrontmost>, put<setProcessFrontmost>},
    {fourCharCode("pvis"), get<processVisible>, put<setProcessVisible>},
    {systemevents::backgroundOnly, get<processBackgroundOnly>},
};

// Each process counts as having one: reading its entries fails where there is none, and asks for nothing before.
std::size_t menuBarCount(EventScope&, Object) {
  return 1;
}

Object menuBarAt(EventScope& scope, Object process, std::size_t) {
  // The empty path is the menu bar's.
  return {&menuBarClass, process.first, systemEvents(scope).numberOf({})};
}

struct ProcessOwners {
  static std::span<const AttributeRow> rows() { return processAttributes; }
  static Object of(EventScope& scope, Object attribute);
};
using ProcessAttributes = AttributeClass<ProcessOwners>;

std::size_t processAttributeCount(EventScope&, Object) {
  return std::size(processAttributes);
}

/// Its windows, and its menu bar behind them.
std::size_t processElementCount(EventScope& scope, Object process) {
  return systemWindowCount(scope, process) + 1;
}

Object processElementAt(EventScope& scope, Object process, std::size_t position) {
  const bool isWindow = position < systemWindowCount(scope, process);
  return isWindow ? systemWindowAt(scope, process, position) : menuBarAt(scope, process, 0);
}

constexpr ElementRow processElements[]{
    {&systemWindowClass, systemWindowCount, systemWindowAt, nullptr, systemWindowByName},
    {&menuBarClass, menuBarCount, menuBarAt},
    {&uiElementClasses[0], processElementCount, processElementAt},
    {&ProcessAttributes::type, processAttributeCount, ProcessAttributes::at},
};

constinit const ObjectClass applicationProcessClass{systemevents::applicationProcess, "application process",
                                                    processProperties, processElements, processSpecifier};
// Every process here is an application's, so the wider class has the same members.
constinit const ObjectClass processClass{systemevents::process, "process", processProperties, processElements,
                                         processSpecifier};

Object ProcessOwners::of(EventScope&, Object attribute) {
  return {&applicationProcessClass, attribute.first};
}

// ----------------------------------------------------------- application

std::size_t processCount(EventScope& scope, Object) {
  return systemEvents(scope).processes().size();
}

Object processAt(EventScope&, Object, std::size_t position) {
  return {&applicationProcessClass, signedPosition(position)};
}

/// By name, and else by bundle identifier: scripts address a browser's process by either.
std::optional<Object> processByName(EventScope& scope, Object, std::string_view name) {
  const std::vector<DesktopProcess>& processes = systemEvents(scope).processes();
  for (const auto member : {&DesktopProcess::name, &DesktopProcess::bundleIdentifier}) {
    const auto found = std::ranges::find_if(
        processes, [&](const DesktopProcess& each) { return sameIgnoringCase(each.*member, name); });
    if (found != processes.end())
      return Object{&applicationProcessClass, found - processes.begin()};
  }
  return std::nullopt;
}

Found applicationName(SystemEventsScope&, Object) {
  return Value("System Events");
}
// It has no windows, so it is never in front.
Found applicationFrontmost(SystemEventsScope&, Object) {
  return Value(false);
}

Found applicationElementsEnabled(SystemEventsScope& scope, Object) {
  try {
    // The cheapest question that the accessibility bus answers; no application is asked.
    (void)scope.desktop().elements().accessibility().applications(scope.limits());
    return Value(true);
  } catch (const platform::DesktopFailure& failure) {
    if (failure.kind() == platform::DesktopFault::stopped)
      throw;
    return Value(false);
  }
}

Found darkMode(SystemEventsScope& scope, Object) {
  return Value(scope.desktop().isDark());
}
void setDarkMode(SystemEventsScope& scope, Object, const Value& value) {
  scope.desktop().setDark(requireBoolean(value));
}

SpecifierPointer appearanceSpecifier(EventScope& scope, Object) {
  return applescript::propertyOf(scope.root(), systemevents::appearancePreferences);
}

constexpr PropertyRow appearanceProperties[]{{systemevents::darkMode, get<darkMode>, put<setDarkMode>}};
constinit const ObjectClass appearanceClass{systemevents::appearancePreferences,
                                            "appearance preferences object",
                                            appearanceProperties,
                                            {},
                                            appearanceSpecifier};

Found appearance(SystemEventsScope&, Object) {
  return Object{&appearanceClass};
}

constexpr PropertyRow applicationProperties[]{
    {systemevents::elementsEnabled, get<applicationElementsEnabled>},
    {systemevents::appearancePreferences, get<appearance>},
    {fourCharCode("pnam"), get<applicationName>},
    {fourCharCode("pisf"), get<applicationFrontmost>},
};

constexpr ElementRow applicationElements[]{
    {&applicationProcessClass, processCount, processAt, nullptr, processByName},
    {&processClass, processCount, processAt, nullptr, processByName},
};

constexpr ObjectClass applicationClass{fourCharCode("capp"), "application", applicationProperties, applicationElements,
                                       nullptr};

} // namespace

const ObjectModel& systemEventsModel() {
  static const ObjectModel model(applicationClass, systemEventsTerminology());
  return model;
}

bool isProcess(Object object) {
  return object.type == &applicationProcessClass || object.type == &processClass;
}

bool isMenuEntry(Object object) {
  return object.type == &menuItemClass || object.type == &menuBarItemClass;
}

} // namespace tabwright::scripting
