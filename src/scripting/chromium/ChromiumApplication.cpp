// Each command is a function over the scope, found by its code at the end of this file. A command on several objects is
// carried out one by one, by ids that are all read from one snapshot: so closing the first tab doesn't shift the
// others. Where one fails, those before it are done.
#include "scripting/chromium/ChromiumApplication.h"

#include "applescript/values/Errors.h"
#include "scripting/browser/BrowserProperties.h"
#include "scripting/browser/MakeRequest.h"
#include "scripting/chromium/ChromiumClasses.h"
#include "scripting/chromium/ChromiumTerminology.h"
#include "scripting/chromium/VersionQuestion.h"
#include "scripting/model/Arguments.h"
#include "scripting/model/Comparison.h"
#include "scripting/model/JSONValue.h"

#include <boost/json/value.hpp>

#include <algorithm>
#include <string>
#include <utility>

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::Value;
namespace events = applescript::events;
namespace errors = applescript::errors;

namespace {

constexpr auto windowCode = fourCharCode("cwin");

/// The tabs that a command is about; −1708 when it is about something else.
std::vector<Object> tabsOf(BrowserScope& scope) {
  const Value subject = scope.model().subject(scope);
  std::vector<Object> objects = scope.model().objects(scope, subject);
  for (const Object& object : objects) {
    if (object.type != &chromiumTabClass())
      throw errors::notUnderstood(subject, scope.message().code, chromiumTerminology());
  }
  return objects;
}

Value execute(BrowserScope& scope) {
  const Value* code = scope.message().parameter(chromium::javascript);
  if (code == nullptr)
    throw errors::missingParameter("javascript", scope.message().code, chromiumTerminology());
  const std::string javascript = requireText(*code);
  // The polls of page jobs come here, and cost no look at the browser.
  if (const auto tab = scope.tabLastSeen(scope.model().subject(scope), chromium::tab)) {
    try {
      return valueOf(scope.driver().evaluate(*tab, javascript, scope.limits()));
    } catch (const DriverFailure& failure) {
      if (failure.kind() != DriverFault::noSuchTab)
        throw;
      // Closed meanwhile: what follows looks for it and says so in the language's words.
    }
  }
  const std::vector<Object> tabs = tabsOf(scope);
  std::vector<Value> results;
  for (const Object& tab : tabs) {
    // Answered for the tab, not by it: the one in front may have crashed or show a dialog.
    if (const auto version = answerToVersionQuestion(javascript, *scope.snapshot().snapshot()))
      results.emplace_back(*version);
    else
      results.push_back(valueOf(scope.driver().evaluate(scope.tab(tab).id, javascript, scope.limits())));
  }
  return results.size() == 1 ? results.front() : Value::list(std::move(results));
}

/// Carries out the command on each tab of the event.
template <class Command>
Value inEachTab(BrowserScope& scope, Command command) {
  for (const Object& tab : tabsOf(scope)) {
    command.tab = scope.tab(tab).id;
    scope.perform(command);
  }
  return Value::missing();
}

Value close(BrowserScope& scope) {
  const Value subject = scope.model().subject(scope);
  for (const Object& object : scope.model().objects(scope, subject)) {
    if (object.type == &chromiumTabClass())
      scope.perform(CloseTab{scope.tab(object).id});
    else if (object.type == &chromiumWindowClass())
      scope.perform(CloseWindow{scope.window(object).id});
    else
      throw errors::notUnderstood(subject, scope.message().code, chromiumTerminology());
  }
  return Value::missing();
}

applescript::SpecifierPointer windowByID(BrowserScope& scope, WindowID id) {
  return applescript::elementByID(scope.root(), windowCode, Value(std::to_string(id)));
}

std::string textOr(const Value* value, std::string otherwise) {
  return value != nullptr && !value->isMissing() ? requireText(*value) : std::move(otherwise);
}

Value makeWindow(BrowserScope& scope, const MakeRequest& request) {
  const std::string mode = textOr(request.find(chromium::mode), "normal");
  const bool isIncognito = sameIgnoringCase(mode, "incognito");
  if (!isIncognito && !sameIgnoringCase(mode, "normal"))
    throw errors::of(applescript::errorNumber::handlerFailed,
                     "The mode of a new window is \"normal\" or \"incognito\", not \"" + mode + "\".");
  const WindowID id = scope.perform(
      MakeWindow{isIncognito ? WindowMode::incognito : WindowMode::normal, textOr(request.find(chromium::url), "")});
  // The browser makes a window without these, so they are commands of their own.
  if (const std::string name = textOr(request.find(chromium::givenName), ""); !name.empty())
    scope.perform(SetGivenName{id, name});
  if (const Value* bounds = request.find(fourCharCode("pbnd")))
    scope.perform(SetBounds{id, requireBounds(*bounds)});
  return Value(windowByID(scope, id));
}

/// The front window that has tabs; nothing when there is none. A developer tools window may be in front of it.
std::optional<Object> frontWindowWithTabs(BrowserScope& scope) {
  const auto& windows = scope.snapshot().windows();
  const auto front = std::ranges::find_if(windows, [](const WindowState& window) { return !window.tabs.empty(); });
  if (front == windows.end())
    return std::nullopt;
  return Object{&chromiumWindowClass(), front - windows.begin()};
}

Value makeTab(BrowserScope& scope, const MakeRequest& request) {
  std::optional<InsertionPlace> place = request.place;
  if (!place) {
    const auto window = frontWindowWithTabs(scope);
    if (!window)
      throw errors::cannotGet(*applescript::elementByIndex(scope.root(), windowCode, 1), chromiumTerminology());
    place = InsertionPlace{*window, std::nullopt};
  }
  if (place->container.type != &chromiumWindowClass())
    throw errors::notUnderstood(Value(scope.root()), scope.message().code, chromiumTerminology());
  const TabID id = openTab(scope, place->container, place->position, textOr(request.find(chromium::url), ""));
  // By ids that the driver gave: the event's snapshot is older than the tab.
  return Value(applescript::elementByID(windowByID(scope, scope.window(place->container).id), chromium::tab,
                                        Value(std::to_string(id))));
}

Value make(BrowserScope& scope) {
  const MakeRequest request = readMakeRequest(scope);
  if (request.elementClass == chromium::tab)
    return makeTab(scope, request);
  if (request.elementClass == windowCode || request.elementClass == fourCharCode("docu"))
    return makeWindow(scope, request);
  throw errors::of(applescript::errorNumber::handlerFailed, "Only windows and tabs can be made.");
}

/// Opens addresses in new tabs of the front window that has tabs, or in a new window when there is none.
Value open(BrowserScope& scope) {
  const Value* target = scope.message().directObject ? &*scope.message().directObject : nullptr;
  if (target == nullptr)
    throw errors::missingParameter("direct", scope.message().code, chromiumTerminology());
  const auto* list = target->get<Value::ListPointer>();
  for (const Value& address : list != nullptr ? (*list)->items : std::vector<Value>{*target}) {
    const std::string url = requireText(address);
    // The snapshot is the event's, so without a window each address opens one of its own.
    if (const auto front = frontWindowWithTabs(scope))
      openTab(scope, *front, std::nullopt, url);
    else
      scope.perform(MakeWindow{WindowMode::normal, url});
  }
  return Value::missing();
}

} // namespace

ChromiumApplication::ChromiumApplication(const platform::BrowserFacts& facts, std::shared_ptr<BrowserDriver> driver,
                                         BrowserHooks hooks)
    : BrowserApplication(facts, std::move(driver), std::move(hooks), chromiumModel()) {}

Value ChromiumApplication::perform(BrowserScope& scope) {
  const applescript::EventCode code = scope.message().code;
  if (code == chromium::execute)
    return execute(scope);
  if (code == events::make)
    return make(scope);
  // `delete` is another word for it.
  if (code == events::close || code == events::remove)
    return close(scope);
  if (code == chromium::reload)
    return inEachTab(scope, Reload{});
  if (code == chromium::stop)
    return inEachTab(scope, StopLoading{});
  if (code == chromium::goBack)
    return inEachTab(scope, GoInHistory{.direction = History::back});
  if (code == chromium::goForward)
    return inEachTab(scope, GoInHistory{.direction = History::forward});
  if (code == events::open || code == openLocation)
    return open(scope);
  throw errors::notUnderstood(scope.model().subject(scope), code, chromiumTerminology());
}

} // namespace tabwright::scripting
