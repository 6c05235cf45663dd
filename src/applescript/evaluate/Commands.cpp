// Commands. Those of the language are answered here, whatever the target is; the rest go to the application that their
// direct parameter is in, or else to the one that the `tell` around talks to.
#include "applescript/evaluate/Accesses.h"
#include "applescript/evaluate/Calls.h"
#include "applescript/evaluate/TestNeedsValues.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Names.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/ScriptableApplication.h"
#include "applescript/values/SourceForm.h"

#include <algorithm>

namespace tabwright::applescript {

namespace {

// Of a list of objects the first tells the application.
std::shared_ptr<ScriptableApplication> applicationIn(const Value& value) {
  const auto* list = value.get<Value::ListPointer>();
  const auto* object = objectIn(list && !(*list)->items.empty() ? (*list)->items.front() : value);
  return object ? (*object)->application : nullptr;
}

Value count(Evaluator& run, const Command& command) {
  if (!command.direct)
    return countOf(run, run.frame->implicitTarget());
  // `count x each tab`.
  std::optional<Value> elementClass;
  for (const auto& [term, expression] : command.parameters) {
    if (term.code == keywords::elementClass)
      elementClass = run.operand(*expression);
  }
  // Elements are counted by the application or in the text, and not evaluated before.
  const Expression& direct = withoutParentheses(*command.direct);
  if (const auto* element = as<ElementAccess>(direct); element && !elementClass)
    return countElements(run, *element);
  const Value value = run.evaluate(direct, Mode::designation);
  if (!elementClass)
    return countOf(run, value);
  const auto* wanted = elementClass->get<Value::ClassPointer>();
  if (!wanted)
    throw errors::cannotMake(*elementClass, "class");
  if (const auto* object = objectIn(value))
    return countOf(run, everyElement(*object, (*wanted)->code));
  const Value::ListPointer items = listOf(run.plain(value));
  return static_cast<std::int64_t>(
      std::ranges::count_if(items->items, [&](const Value& item) { return isKindOf(item, (*wanted)->code); }));
}

Value exists(Evaluator& run, const Command& command) {
  Value value;
  try {
    value = run.containerOf(command.direct);
  } catch (const ScriptError& error) {
    // Something on the way that isn't there; any other failure is no answer.
    if (error.number() == errorNumber::noSuchObject || error.number() == errorNumber::invalidIndex)
      return false;
    throw;
  }
  // An object under test can't be asked from here: the whole condition then is evaluated object by object.
  requireValue(value);
  const auto* object = objectIn(value);
  if (!object || (*object)->form == ObjectSpecifier::Form::application)
    return true;
  return run.sender.send(events::exists, *object);
}

// A parameter that says where something goes is a place, and stays unresolved, as do elements; properties are read.
Value commandParameter(Evaluator& run, const ParameterTerm& parameter, const Expression& expression) {
  const Expression& inner = withoutParentheses(expression);
  const bool isPlace = parameter.code == keywords::insertionLocation ||
                       inner.kind == Expression::Kind::insertionPoint || inner.kind == Expression::Kind::element ||
                       inner.kind == Expression::Kind::it;
  return outgoing(run.evaluate(expression, isPlace ? Mode::designation : Mode::value));
}

// A handler of the script with a command's name: `on quit`, `on open x`.
std::optional<Value> ownCommand(Evaluator& run, const Command& command, const std::optional<Value>& direct) {
  const auto* script = run.frame->target.get<Value::ScriptPointer>();
  const std::shared_ptr<ScriptObject> receiver = script ? *script : run.frame->self;
  const FoundHandler found = findHandler(receiver, foldedName(command.term->words));
  if (!found.definition)
    return {};
  Arguments arguments;
  // The words of a command stand for whichever form the handler was written in.
  arguments.isLabelled = found.definition->isLabelled;
  if (direct && found.definition->direct)
    arguments.direct = *direct;
  else if (direct)
    arguments.positional.push_back(*direct);
  return invoke(run, found, receiver, std::move(arguments), command.term->words);
}

Value sendCommand(Evaluator& run, const Command& command) {
  AppleEventMessage message;
  message.code = command.term->event;
  std::shared_ptr<ScriptableApplication> application;
  if (command.direct) {
    message.directObject = outgoing(run.evaluate(*command.direct, Mode::designation));
    requireValue(*message.directObject);
    application = applicationIn(*message.directObject);
  }
  for (const auto& [term, expression] : command.parameters)
    message.parameters.emplace_back(term.code, commandParameter(run, term, *expression));
  const Value target = run.frame->implicitTarget();
  if (!application)
    application = applicationIn(target);
  if (application)
    return run.sender.send(application, std::move(message));
  if (const auto own = ownCommand(run, command, message.directObject))
    return *own;
  // `activate` and the like without a target are for the script's own host, which has nothing to do.
  const bool isForHost =
      message.code == events::activate || message.code == events::launch || message.code == events::reopen;
  if (isForHost && (!command.direct || message.directObject->is<Value::SpecifierPointer>()))
    return Value::nothing();
  throw errors::notUnderstood(shortSourceForm(message.directObject.value_or(target)), command.term->words);
}

Value runCommand(Evaluator& run, const Command& command) {
  const Value target = run.containerOf(command.direct);
  if (const auto* script = target.get<Value::ScriptPointer>()) {
    const std::shared_ptr<ScriptObject> held = *script;
    return runScript(run, held, {});
  }
  return sendCommand(run, command);
}

} // namespace

Value evaluateCommand(Evaluator& run, const Command& command) {
  switch (eventKey(command.term->event)) {
  case eventKey(events::get):
    // No event of its own: evaluating an object is the `get`.
    return command.direct ? run.evaluateOptional(*command.direct)
                          : propertyOf(run, run.frame->implicitTarget(), {codes::contents, "contents"}, Mode::value);
  case eventKey(events::count):
    return count(run, command);
  case eventKey(events::exists):
    return exists(run, command);
  // `run s` of a script is a call; only other targets are sent the event.
  case eventKey(events::run):
    return runCommand(run, command);
  default:
    if (auto answer = answerOfAddition(run, command))
      return std::move(*answer);
    return sendCommand(run, command);
  }
}

} // namespace tabwright::applescript
