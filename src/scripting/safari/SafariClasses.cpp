// The object tree of Safari: the application contains windows (those with tabs, front to back), and a document for each
// of them; windows contain tabs. Positions of objects are positions in the snapshot, where windows without tabs have a
// place too, so the application's elements are counted over them.
#include "scripting/safari/SafariClasses.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Errors.h"
#include "scripting/browser/BrowserProperties.h"
#include "scripting/model/JSONValue.h"
#include "scripting/safari/SafariTerminology.h"

#include <boost/json/value.hpp>

#include <string>

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::Value;
namespace errors = applescript::errors;

namespace {

constexpr auto safariWindowCode = fourCharCode("cwin");
constexpr auto documentCode = fourCharCode("docu");

template <auto Get>
constexpr auto get = reading<BrowserScope, Get>;
template <auto Set>
constexpr auto put = writing<BrowserScope, Set>;

BrowserScope& browser(EventScope& scope) {
  return static_cast<BrowserScope&>(scope);
}

applescript::SpecifierPointer windowSpecifierAt(BrowserScope& scope, std::int64_t position) {
  const auto at = static_cast<std::size_t>(position);
  return scope.windowSpecifier(at, Value(scope.snapshot().windows().at(at).id));
}

// ------------------------------------------------------------------ tabs

Found tabIndex(BrowserScope&, Object tab) {
  return Value(tab.second + 1);
}

Found addressOrMissing(BrowserScope& scope, Object tab) {
  const std::string& url = scope.tab(tab).url;
  // As Safari tells the address of an empty tab.
  return url.empty() ? Value::missing() : Value(url);
}

Found tabVisible(BrowserScope& scope, Object tab) {
  return Value(scope.window(tab).activeTabIndex == static_cast<std::size_t>(tab.second + 1));
}

Value evaluated(BrowserScope& scope, Object tab, const char* javascript) {
  return valueOf(scope.driver().evaluate(scope.tab(tab).id, javascript, scope.limits()));
}

// The page as it is now, which no snapshot has: costs a call of the page.
Found tabSource(BrowserScope& scope, Object tab) {
  return evaluated(scope, tab, "document.documentElement.outerHTML");
}

applescript::SpecifierPointer specifierOfTab(EventScope& scope, Object tab) {
  return safariTabSpecifier(windowSpecifierAt(browser(scope), tab.first), static_cast<std::size_t>(tab.second + 1));
}

constexpr PropertyRow tabProperties[]{
    {fourCharCode("pidx"), get<tabIndex>},
    {fourCharCode("pnam"), get<tabTitle>},
    {safari::url, get<addressOrMissing>, put<setTabURL>},
    {fourCharCode("pvis"), get<tabVisible>},
    {safari::source, get<tabSource>},
};

constexpr ObjectClass tabClass{safari::tab, "tab", tabProperties, {}, specifierOfTab};

// ------------------------------------------------------------- documents

/// A document's own properties are those of the page in its window; `missing value` without one.
Found ofCurrentTab(BrowserScope& scope, Object document, Found (*property)(BrowserScope&, Object)) {
  const auto tab = currentTabOf(scope, document);
  return tab ? property(scope, *tab) : Found(Value::missing());
}

Found documentURL(BrowserScope& scope, Object document) {
  return ofCurrentTab(scope, document, addressOrMissing);
}
Found documentSource(BrowserScope& scope, Object document) {
  return ofCurrentTab(scope, document, tabSource);
}

void setDocumentURL(BrowserScope& scope, Object document, const Value& value) {
  if (const auto tab = currentTabOf(scope, document))
    setTabURL(scope, *tab, value);
}

applescript::SpecifierPointer specifierOfDocument(EventScope& scope, Object document) {
  return applescript::elementByID(scope.root(), documentCode, Value(browser(scope).window(document).id));
}

constexpr PropertyRow documentProperties[]{
    {fourCharCode("pnam"), get<windowName>},
    {safari::url, get<documentURL>, put<setDocumentURL>},
    {safari::source, get<documentSource>},
};

constexpr ObjectClass documentClass{documentCode, "document", documentProperties, {}, specifierOfDocument};

// --------------------------------------------------------------- windows

Found windowID(BrowserScope& scope, Object window) {
  return Value(scope.window(window).id);
}

Found windowDocument(BrowserScope&, Object window) {
  // One document for a window, at the same position.
  return Object{&documentClass, window.first};
}

Found currentTab(BrowserScope& scope, Object window) {
  // A window that is just closing may have none.
  const auto tab = currentTabOf(scope, window);
  return tab ? Found(*tab) : Found(Value::missing());
}

void setCurrentTab(BrowserScope& scope, Object window, const Value& value) {
  const Object tab = scope.model().object(scope, value);
  // A window shows no tabs but its own.
  if (tab.type != &tabClass || tab.first != window.first)
    throw errors::of(applescript::errorNumber::cannotSet,
                     "Can’t set current tab of the window to what is no tab of it.");
  scope.perform(ActivateTab{scope.tab(tab).id});
}

/// Position among the listed windows, which leaves out those without tabs.
Found listedIndex(BrowserScope& scope, Object window) {
  std::int64_t index = 1;
  for (std::int64_t position = 0; position < window.first; ++position)
    index += scope.snapshot().windows()[static_cast<std::size_t>(position)].tabs.empty() ? 0 : 1;
  return Value(index);
}

applescript::SpecifierPointer specifierOfWindow(EventScope& scope, Object window) {
  return windowSpecifierAt(browser(scope), window.first);
}

constexpr PropertyRow windowProperties[]{
    {fourCharCode("ID  "), get<windowID>},
    {fourCharCode("pnam"), get<windowName>},
    {fourCharCode("pidx"), get<listedIndex>, put<setWindowIndex>},
    {safari::currentTab, get<currentTab>, put<setCurrentTab>},
    {documentCode, get<windowDocument>},
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
  return countTabs(browser(scope), window);
}

Object tabAt(EventScope&, Object window, std::size_t position) {
  return {&tabClass, window.first, static_cast<std::int64_t>(position)};
}

constexpr ElementRow windowElements[]{{&tabClass, tabCount, tabAt}};

constexpr ObjectClass windowClass{safariWindowCode, "window", windowProperties, windowElements, specifierOfWindow};

// ----------------------------------------------------------- application

std::size_t listedCount(EventScope& scope, Object) {
  std::size_t count = 0;
  for (const WindowState& window : browser(scope).snapshot().windows())
    count += window.tabs.empty() ? 0 : 1;
  return count;
}

/// The window, or its document, at a position among those with tabs.
template <const ObjectClass& type>
Object listedAt(EventScope& scope, Object, std::size_t position) {
  std::int64_t at = 0;
  for (const WindowState& window : browser(scope).snapshot().windows()) {
    if (!window.tabs.empty() && position-- == 0)
      break;
    ++at;
  }
  return {&type, at};
}

/// Ids are those of windows, for documents too; one of developer tools is found by none.
template <const ObjectClass& type>
std::optional<Object> listedByID(EventScope& scope, Object, const Value& id) {
  const auto number = idNumber(id);
  const auto at = number ? browser(scope).snapshot().findWindow(*number) : std::nullopt;
  // A window of developer tools isn't listed, so its id names nothing either.
  if (!at || browser(scope).snapshot().windows()[*at].tabs.empty())
    return std::nullopt;
  return Object{&type, static_cast<std::int64_t>(*at)};
}

constexpr PropertyRow applicationProperties[]{
    {fourCharCode("pnam"), get<applicationName>},
    {fourCharCode("pisf"), get<applicationFrontmost>},
    {fourCharCode("vers"), get<applicationVersion>},
    {fourCharCode("prun"), get<applicationRunning>},
};

constexpr ElementRow applicationElements[]{
    {&windowClass, listedCount, listedAt<windowClass>, listedByID<windowClass>},
    {&documentClass, listedCount, listedAt<documentClass>, listedByID<documentClass>},
};

constexpr ObjectClass applicationClass{fourCharCode("capp"), "application", applicationProperties, applicationElements,
                                       nullptr};

} // namespace

std::optional<Object> currentTabOf(BrowserScope& scope, Object window) {
  const WindowState& state = scope.window(window);
  if (state.activeTabIndex == 0 || state.activeTabIndex > state.tabs.size())
    return std::nullopt;
  return Object{&tabClass, window.first, static_cast<std::int64_t>(state.activeTabIndex - 1)};
}

applescript::SpecifierPointer safariWindowSpecifier(BrowserScope& scope, WindowID id) {
  return applescript::elementByID(scope.root(), safariWindowCode, Value(id));
}

applescript::SpecifierPointer safariTabSpecifier(applescript::SpecifierPointer window, std::size_t index) {
  return applescript::elementByIndex(std::move(window), safari::tab, static_cast<std::int64_t>(index));
}

const ObjectModel& safariModel() {
  static const ObjectModel model(applicationClass, safariTerminology());
  return model;
}

const ObjectClass& safariWindowClass() {
  return windowClass;
}
const ObjectClass& safariDocumentClass() {
  return documentClass;
}
const ObjectClass& safariTabClass() {
  return tabClass;
}

} // namespace tabwright::scripting
