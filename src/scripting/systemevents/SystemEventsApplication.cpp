// Reading goes by the tables of classes; the commands, which touch menus and the keyboard, are here. One scope serves
// the whole event, so menus and elements are read once for it. The desktop throws failures with sentences for the user,
// which become the errors of scripts in one place, at the end.
#include "scripting/systemevents/SystemEventsApplication.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Errors.h"
#include "scripting/model/Arguments.h"
#include "scripting/systemevents/SystemEventsClasses.h"
#include "scripting/systemevents/SystemEventsScope.h"
#include "scripting/systemevents/SystemEventsTerminology.h"
#include "scripting/systemevents/UIElementClasses.h"
#include "scripting/systemevents/UIElementCommands.h"
#include "scripting/systemevents/UIElementProperties.h"

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

/// One value may stand for a list of it.
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
  if (const Value* place = scope.message().parameter(systemevents::clickPlace)) {
    const auto [x, y] = uielement::requirePair(*place);
    scope.desktop().clickAt(x, y);
    return Value::missing();
  }
  const Value& target = requireDirect(scope);
  // One thing is clicked; several at once are an error.
  const Object object = scope.model().object(scope, target);
  if (isMenuEntry(object))
    scope.desktop().elements().chooseMenuItem(scope.process(object), scope.path(object), scope.limits());
  else if (isUIElement(object))
    uielement::press(scope, object);
  else
    throw errors::notUnderstood(target, systemevents::click, systemEventsTerminology());
  return Value(object.type->specifier(scope, object));
}

Value performActions(SystemEventsScope& scope) {
  const Value& target = requireDirect(scope);
  for (const Object& object : scope.model().objects(scope, target)) {
    if (!isUIElementAction(object))
      throw errors::notUnderstood(target, systemevents::perform, systemEventsTerminology());
    performUIElementAction(scope, object);
  }
  return target;
}

struct ActionCommand {
  applescript::EventCode code;
  std::string_view action;
};

/// Commands that are actions of an element's by another name.
constexpr ActionCommand actionCommands[]{
    {systemevents::cancel, "AXCancel"},       {systemevents::confirm, "AXConfirm"},     {systemevents::pick, "AXPress"},
    {systemevents::decrement, "AXDecrement"}, {systemevents::increment, "AXIncrement"},
};

Value performCommand(SystemEventsScope& scope, const ActionCommand& command) {
  const Value& target = requireDirect(scope);
  const Object object = scope.model().object(scope, target);
  if (!isUIElement(object) || !performUIElementAction(scope, object, command.action))
    throw errors::notUnderstood(target, command.code, systemEventsTerminology());
  return target;
}

/// The element that is named becomes all that is selected.
Value select(SystemEventsScope& scope) {
  const Value& target = requireDirect(scope);
  auto selection = platform::AccessibleSelection::only;
  for (const Object& object : scope.model().objects(scope, target)) {
    if (!isUIElement(object) || scope.tree().node(object.first).window)
      throw errors::notUnderstood(target, systemevents::select, systemEventsTerminology());
    uielement::select(scope, object, selection);
    selection = platform::AccessibleSelection::added;
  }
  return target;
}

Value activate(SystemEventsScope& scope) {
  const Value subject = scope.model().subject(scope);
  for (const Object& object : scope.model().objects(scope, subject)) {
    // Also told to System Events itself, which has no window to bring forward.
    if (isProcess(object))
      scope.desktop().activate(scope.process(object).pid);
  }
  return Value::missing();
}

Value closeWindows(SystemEventsScope& scope) {
  const Value subject = scope.model().subject(scope);
  for (const Object& object : scope.model().objects(scope, subject)) {
    const DesktopWindow* window = isUIElement(object) ? scope.tree().node(object.first).window : nullptr;
    if (!window)
      throw errors::notUnderstood(subject, events::close, systemEventsTerminology());
    scope.desktop().close(window->id);
  }
  return Value::missing();
}

Value perform(SystemEventsScope& scope) {
  const applescript::EventCode code = scope.message().code;
  if (code == systemevents::click)
    return click(scope);
  if (code == systemevents::perform)
    return performActions(scope);
  if (const auto command = std::ranges::find(actionCommands, code, &ActionCommand::code);
      command != std::ranges::end(actionCommands))
    return performCommand(scope, *command);
  if (code == systemevents::select)
    return select(scope);
  if (code == systemevents::keystroke) {
    scope.desktop().keystroke(requireText(requireDirect(scope)), heldModifiers(scope), scope.limits());
    return Value::missing();
  }
  if (code == systemevents::keyCode) {
    for (const Value& key : itemsOf(requireDirect(scope)))
      // Clamped to what an int takes: the keyboard tells of a code that no key has.
      scope.desktop().keyCode(static_cast<int>(std::clamp<std::int64_t>(requireInteger(key), -1, 0xFFFF)),
                              heldModifiers(scope), scope.limits());
    return Value::missing();
  }
  if (code == systemevents::keyDown || code == systemevents::keyUp) {
    const std::vector<ModifierKey> keys = modifiersOf(requireDirect(scope));
    // Programs that hold nothing release nothing: `key up {}`.
    if (!keys.empty())
      scope.desktop().modifiers(code == systemevents::keyDown ? KeyTransition::down : KeyTransition::up, keys);
    return Value::missing();
  }
  if (code == events::activate || code == events::run)
    return activate(scope);
  if (code == events::close)
    return closeWindows(scope);
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
    // A Failure too, which has its number already.
    throw;
  } catch (const platform::Failure& failure) {
    applescript::ScriptError error = errors::of(applescript::errorNumber::handlerFailed, failure.errorDescription());
    error.setCause(platform::asCause(failure));
    throw error;
  }
}

} // namespace tabwright::scripting
