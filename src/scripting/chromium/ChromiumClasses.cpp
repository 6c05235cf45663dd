// The object tree of the Chromium family: the application contains windows, front to back, and windows contain tabs, in
// strip order. Windows and tabs are found by id in the index of the snapshot, at a cost that doesn't grow with them.
#include "scripting/chromium/ChromiumClasses.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Errors.h"
#include "scripting/browser/BrowserProperties.h"
#include "scripting/browser/BrowserScope.h"
#include "scripting/chromium/ChromiumTerminology.h"
#include "scripting/model/Arguments.h"

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::Value;
namespace errors = applescript::errors;

namespace {

template <auto Get>
constexpr auto get = reading<BrowserScope, Get>;
template <auto Set>
constexpr auto put = writing<BrowserScope, Set>;

TabPosition tabPosition(Object tab) {
  return {static_cast<std::size_t>(tab.first), static_cast<std::size_t>(tab.second)};
}

// ------------------------------------------------------------------ tabs

Found tabID(BrowserScope& scope, Object tab) {
  return Value(scope.snapshot().tabIDText(tabPosition(tab)));
}
Found tabLoading(BrowserScope& scope, Object tab) {
  return Value(scope.tab(tab).isLoading);
}

applescript::SpecifierPointer windowSpecifier(BrowserScope& scope, std::int64_t position) {
  const auto at = static_cast<std::size_t>(position);
  return scope.windowSpecifier(at, Value(scope.snapshot().windowIDText(at)));
}

applescript::SpecifierPointer tabSpecifier(EventScope& scope, Object tab) {
  auto& browser = static_cast<BrowserScope&>(scope);
  return applescript::elementByID(windowSpecifier(browser, tab.first), chromium::tab,
                                  Value(browser.snapshot().tabIDText(tabPosition(tab))));
}

constexpr PropertyRow tabProperties[]{
    {fourCharCode("ID  "), get<tabID>},
    {fourCharCode("pnam"), get<tabTitle>},
    {chromium::url, get<tabURL>, put<setTabURL>},
    {chromium::loading, get<tabLoading>},
};

constexpr ObjectClass tabClass{chromium::tab, "tab", tabProperties, {}, tabSpecifier};

// --------------------------------------------------------------- windows

Found windowID(BrowserScope& scope, Object window) {
  return Value(scope.snapshot().windowIDText(static_cast<std::size_t>(window.first)));
}

Found windowMode(BrowserScope& scope, Object window) {
  // The dictionary has these two as texts, not as words of its own.
  return Value(scope.window(window).mode == WindowMode::incognito ? "incognito" : "normal");
}

Found windowGivenName(BrowserScope& scope, Object window) {
  return Value(scope.window(window).givenName);
}

void setWindowGivenName(BrowserScope& scope, Object window, const Value& value) {
  scope.perform(SetGivenName{scope.window(window).id, requireText(value)});
}

Found activeTabIndex(BrowserScope& scope, Object window) {
  return Value(static_cast<std::int64_t>(scope.window(window).activeTabIndex));
}

void setActiveTabIndex(BrowserScope& scope, Object window, const Value& value) {
  const WindowState& state = scope.window(window);
  const std::int64_t index = requireInteger(value);
  if (index < 1 || index > static_cast<std::int64_t>(state.tabs.size()))
    // Unlike the index of an element, this one doesn't count from the end.
    throw errors::of(applescript::errorNumber::invalidIndex,
                     "Can’t set active tab index of the window: there is no tab " + std::to_string(index) + ".");
  scope.perform(ActivateTab{state.tabs[static_cast<std::size_t>(index - 1)].id});
}

Found activeTab(BrowserScope& scope, Object window) {
  const std::size_t index = scope.window(window).activeTabIndex;
  // Developer tools have none, and neither has a window that is just closing.
  if (index == 0 || index > scope.window(window).tabs.size())
    throw errors::cannotGet(*applescript::propertyOf(windowSpecifier(scope, window.first), chromium::activeTab),
                            chromiumTerminology());
  return Object{&tabClass, window.first, static_cast<std::int64_t>(index - 1)};
}

applescript::SpecifierPointer specifierOfWindow(EventScope& scope, Object window) {
  return windowSpecifier(static_cast<BrowserScope&>(scope), window.first);
}

constexpr PropertyRow windowProperties[]{
    {fourCharCode("ID  "), get<windowID>},
    {fourCharCode("pnam"), get<windowName>},
    {chromium::givenName, get<windowGivenName>, put<setWindowGivenName>},
    {fourCharCode("pidx"), get<windowIndex>, put<setWindowIndex>},
    {chromium::mode, get<windowMode>},
    {chromium::activeTab, get<activeTab>},
    {chromium::activeTabIndex, get<activeTabIndex>, put<setActiveTabIndex>},
    {fourCharCode("pbnd"), get<windowBounds>, put<setWindowBounds>},
    {fourCharCode("pvis"), get<windowVisible>, put<setWindowVisible>},
    {fourCharCode("pmnd"), get<windowMinimized>, put<setWindowMinimized>},
    {fourCharCode("pzum"), get<windowZoomed>, put<setWindowZoomed>},
    {fourCharCode("hclb"), get<always>},
    {fourCharCode("ismn"), get<always>},
    {fourCharCode("prsz"), get<always>},
    {fourCharCode("iszm"), get<always>},
};

std::size_t tabCount(EventScope& scope, Object window) {
  return countTabs(static_cast<BrowserScope&>(scope), window);
}

Object tabAt(EventScope&, Object window, std::size_t position) {
  return {&tabClass, window.first, static_cast<std::int64_t>(position)};
}

std::optional<Object> tabByID(EventScope& scope, Object window, const Value& id) {
  const auto number = idNumber(id);
  const auto at = number ? static_cast<BrowserScope&>(scope).snapshot().findTab(*number) : std::nullopt;
  // The index knows all tabs; one of another window is no element of this one.
  if (!at || at->window != static_cast<std::size_t>(window.first))
    return std::nullopt;
  return Object{&tabClass, window.first, static_cast<std::int64_t>(at->tab)};
}

constexpr ElementRow windowElements[]{{&tabClass, tabCount, tabAt, tabByID}};

constexpr ObjectClass windowClass{fourCharCode("cwin"), "window", windowProperties, windowElements, specifierOfWindow};

// ----------------------------------------------------------- application

std::size_t windowCount(EventScope& scope, Object) {
  return static_cast<BrowserScope&>(scope).snapshot().windows().size();
}

Object windowAt(EventScope&, Object, std::size_t position) {
  return {&windowClass, static_cast<std::int64_t>(position)};
}

std::optional<Object> windowByID(EventScope& scope, Object, const Value& id) {
  const auto number = idNumber(id);
  const auto at = number ? static_cast<BrowserScope&>(scope).snapshot().findWindow(*number) : std::nullopt;
  return at ? std::optional(Object{&windowClass, static_cast<std::int64_t>(*at)}) : std::nullopt;
}

constexpr PropertyRow applicationProperties[]{
    {fourCharCode("pnam"), get<applicationName>},
    {fourCharCode("pisf"), get<applicationFrontmost>},
    {fourCharCode("vers"), get<applicationVersion>},
    {fourCharCode("prun"), get<applicationRunning>},
};

constexpr ElementRow applicationElements[]{{&windowClass, windowCount, windowAt, windowByID}};

// The application has no specifier of its own: the scope's root names it.
constexpr ObjectClass applicationClass{fourCharCode("capp"), "application", applicationProperties, applicationElements,
                                       nullptr};

} // namespace

const ObjectModel& chromiumModel() {
  static const ObjectModel model(applicationClass, chromiumTerminology());
  return model;
}

const ObjectClass& chromiumWindowClass() {
  return windowClass;
}
const ObjectClass& chromiumTabClass() {
  return tabClass;
}

} // namespace tabwright::scripting
