// Reading goes by the tables of classes; the commands, which touch menus and the keyboard, are here.
#include "scripting/systemevents/SystemEventsApplication.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Errors.h"
#include "scripting/model/Arguments.h"
#include "scripting/systemevents/SystemEventsClasses.h"
#include "scripting/systemevents/SystemEventsScope.h"
#include "scripting/systemevents/SystemEventsTerminology.h"

#include <algorithm>
#include <utility>

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::Value;
namespace events = applescript::events;
namespace errors = applescript::errors;

namespace {

struct ModifierRow {
  applescript::FourCharCode held; ///< `command down`, said of a keystroke
  applescript::FourCharCode key;  ///< `command`, the key itself
  ModifierKey modifier;
};

constexpr ModifierRow modifierRows[]{
    {fourCharCode("Kcmd"), fourCharCode("eCmd"), ModifierKey::command},
    {fourCharCode("Kopt"), fourCharCode("eOpt"), ModifierKey::option},
    {fourCharCode("Kctl"), fourCharCode("eCnt"), ModifierKey::control},
    {fourCharCode("Ksft"), fourCharCode("eSft"), ModifierKey::shift},
};

std::vector<Value> itemsOf(const Value& value) {
  if (const auto* list = value.get<Value::ListPointer>())
    return (*list)->items;
  return {value};
}

/// One modifier or a list of them, in either of their two wordings.
std::vector<ModifierKey> modifiersOf(const Value& value) {
  std::vector<ModifierKey> keys;
  for (const Value& each : itemsOf(value)) {
    const auto* enumerator = each.get<Value::EnumeratorPointer>();
    const auto row = std::ranges::find_if(modifierRows, [&](const ModifierRow& candidate) {
      return enumerator && ((*enumerator)->code == candidate.held || (*enumerator)->code == candidate.key);
    });
    if (row == std::ranges::end(modifierRows))
      throw errors::cannotMake(each, "modifier key");
    keys.push_back(row->modifier);
  }
  return keys;
}

std::vector<ModifierKey> heldModifiers(const SystemEventsScope& scope) {
  const Value* given = scope.message().parameter(systemevents::usingModifiers);
  return given ? modifiersOf(*given) : std::vector<ModifierKey>{};
}

const Value& requireDirect(const SystemEventsScope& scope) {
  if (!scope.message().directObject)
    throw errors::missingParameter("direct", scope.message().code, systemEventsTerminology());
  return *scope.message().directObject;
}

Value click(SystemEventsScope& scope) {
  const Value& target = requireDirect(scope);
  const Object object = scope.model().object(scope, target);
  if (!isMenuEntry(object))
    throw errors::notUnderstood(target, systemevents::click, systemEventsTerminology());
  scope.desktop().chooseMenuItem(scope.process(object), scope.path(object), scope.limits());
  return Value(object.type->specifier(scope, object));
}

Value activate(SystemEventsScope& scope) {
  const Value subject = scope.model().subject(scope);
  for (const Object& object : scope.model().objects(scope, subject)) {
    if (isProcess(object))
      scope.desktop().activate(scope.process(object).pid);
  }
  return Value::missing();
}

Value perform(SystemEventsScope& scope) {
  const applescript::EventCode code = scope.message().code;
  if (code == systemevents::click)
    return click(scope);
  if (code == systemevents::keystroke) {
    scope.desktop().keystroke(requireText(requireDirect(scope)), heldModifiers(scope), scope.limits());
    return Value::missing();
  }
  if (code == systemevents::keyCode) {
    for (const Value& key : itemsOf(requireDirect(scope)))
      scope.desktop().keyCode(static_cast<int>(std::clamp<std::int64_t>(requireInteger(key), -1, 0xFFFF)),
                              heldModifiers(scope), scope.limits());
    return Value::missing();
  }
  if (code == systemevents::keyDown || code == systemevents::keyUp) {
    const std::vector<ModifierKey> keys = modifiersOf(requireDirect(scope));
    if (!keys.empty())
      scope.desktop().modifiers(code == systemevents::keyDown ? KeyTransition::down : KeyTransition::up, keys);
    return Value::missing();
  }
  if (code == events::activate || code == events::run)
    return activate(scope);
  if (code == events::quit)
    return Value::missing(); // the real one ends by itself, and so nothing is lost
  throw errors::notUnderstood(scope.model().subject(scope), code, systemEventsTerminology());
}

} // namespace

SystemEventsApplication::SystemEventsApplication(std::shared_ptr<Desktop> desktop) : desktop_(std::move(desktop)) {}

const applescript::Terminology* SystemEventsApplication::terminology() const {
  return &systemEventsTerminology();
}

Value SystemEventsApplication::handle(const applescript::AppleEventMessage& message) {
  SystemEventsScope scope(systemEventsModel(), shared_from_this(), message, *desktop_);
  try {
    if (auto answer = systemEventsModel().answer(scope))
      return std::move(*answer);
    return perform(scope);
  } catch (const applescript::ScriptError&) {
    throw;
  } catch (const platform::Failure& failure) {
    throw errors::of(applescript::errorNumber::handlerFailed, failure.errorDescription());
  }
}

} // namespace tabwright::scripting
