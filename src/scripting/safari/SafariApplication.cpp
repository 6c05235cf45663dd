// Commands of the dictionary, in the terms of the driver. Safari names a tab by its position, so the position of a tab
// just made is looked up once more. Documents are windows by another name: a command on one is carried out on its
// window, or on that window's current tab.
#include "scripting/safari/SafariApplication.h"

#include "applescript/values/Errors.h"
#include "scripting/browser/BrowserProperties.h"
#include "scripting/browser/MakeRequest.h"
#include "scripting/model/Arguments.h"
#include "scripting/model/JSONValue.h"
#include "scripting/safari/SafariClasses.h"
#include "scripting/safari/SafariTerminology.h"

#include <boost/json/value.hpp>

#include <string>
#include <utility>

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::Value;
namespace events = applescript::events;
namespace errors = applescript::errors;

namespace {

constexpr auto windowCode = fourCharCode("cwin");

/// `do javascript x in t`, or `do javascript x` inside `tell t`; t is a tab, or a document or window with a current
/// tab.
Value doJavaScript(BrowserScope& scope) {
  if (!scope.message().directObject)
    throw errors::missingParameter("direct", scope.message().code, safariTerminology());
  const std::string javascript = requireText(*scope.message().directObject);
  Value target;
  if (const Value* given = scope.message().parameter(safari::target))
    target = *given;
  // A specifier without a container is the application itself, which shows no page.
  else if (scope.message().subject && scope.message().subject->container)
    target = Value(scope.message().subject);
  else
    throw errors::missingParameter("in", scope.message().code, safariTerminology());

  std::vector<Value> results;
  for (const Object& object : scope.model().objects(scope, target)) {
    const bool isTab = object.type == &safariTabClass();
    const std::optional<Object> tab = isTab ? std::optional(object)
                                      : object.type == &safariWindowClass() || object.type == &safariDocumentClass()
                                          ? currentTabOf(scope, object)
                                          : std::nullopt;
    if (!tab)
      throw errors::notUnderstood(target, safari::doJavaScript, safariTerminology());
    results.push_back(valueOf(scope.driver().evaluate(scope.tab(*tab).id, javascript, scope.limits())));
  }
  return results.size() == 1 ? results.front() : Value::list(std::move(results));
}

Value close(BrowserScope& scope) {
  const Value subject = scope.model().subject(scope);
  for (const Object& object : scope.model().objects(scope, subject)) {
    if (object.type == &safariTabClass())
      scope.perform(CloseTab{scope.tab(object).id});
    else if (object.type == &safariWindowClass() || object.type == &safariDocumentClass())
      scope.perform(CloseWindow{scope.window(object).id});
    else
      throw errors::notUnderstood(subject, scope.message().code, safariTerminology());
  }
  return Value::missing();
}

std::string addressOf(const MakeRequest& request) {
  const Value* url = request.find(safari::url);
  return url && !url->isMissing() ? requireText(*url) : std::string();
}

Value makeTab(BrowserScope& scope, const MakeRequest& request) {
  const Object window =
      request.place ? request.place->container
                    : scope.model().object(scope, Value(applescript::elementByIndex(scope.root(), windowCode, 1)));
  if (window.type != &safariWindowClass())
    throw errors::notUnderstood(Value(scope.root()), scope.message().code, safariTerminology());
  const std::optional<std::size_t> position = request.place ? request.place->position : std::nullopt;
  const TabID id = openTab(scope, window, position, addressOf(request));
  // Another look than the event's, which was taken before the tab was there.
  const auto now = scope.driver().snapshot(scope.limits());
  const WindowID windowID = scope.window(window).id;
  for (const WindowState& each : now->windows) {
    for (std::size_t tab = 0; tab < each.tabs.size(); ++tab) {
      if (each.tabs[tab].id == id)
        return Value(safariTabSpecifier(safariWindowSpecifier(scope, each.id), tab + 1));
    }
  }
  // Closed again already: named by the place that it had.
  return Value(safariTabSpecifier(safariWindowSpecifier(scope, windowID), scope.window(window).tabs.size() + 1));
}

Value make(BrowserScope& scope) {
  const MakeRequest request = readMakeRequest(scope);
  if (request.elementClass == safari::tab)
    return makeTab(scope, request);
  const bool isDocument = request.elementClass == fourCharCode("docu");
  if (!isDocument && request.elementClass != windowCode)
    throw errors::of(applescript::errorNumber::handlerFailed, "Only documents, windows and tabs can be made.");
  const WindowID id = scope.perform(MakeWindow{WindowMode::normal, addressOf(request)});
  return isDocument ? Value(applescript::elementByID(scope.root(), fourCharCode("docu"), Value(id)))
                    : Value(safariWindowSpecifier(scope, id));
}

} // namespace

SafariApplication::SafariApplication(const platform::BrowserFacts& facts, std::shared_ptr<BrowserDriver> driver,
                                     BrowserHooks hooks)
    : BrowserApplication(facts, std::move(driver), std::move(hooks), safariModel()) {}

Value SafariApplication::perform(BrowserScope& scope) {
  const applescript::EventCode code = scope.message().code;
  if (code == safari::doJavaScript)
    return doJavaScript(scope);
  if (code == events::make)
    return make(scope);
  if (code == events::close || code == events::remove)
    return close(scope);
  throw errors::notUnderstood(scope.model().subject(scope), code, safariTerminology());
}

} // namespace tabwright::scripting
