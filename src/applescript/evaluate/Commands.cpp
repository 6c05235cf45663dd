// Commands. Those of the language are answered here, whatever the target is; the rest go to the application that their
// direct parameter is in, or else to the one that the `tell` around talks to.
#include "applescript/evaluate/Evaluator.h"
#include "applescript/evaluate/TestNeedsValues.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Names.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/ScriptableApplication.h"
#include "applescript/values/SourceForm.h"

#include <algorithm>

namespace tabwright::applescript {

namespace {

std::shared_ptr<ScriptableApplication> applicationIn(const Value& value) {
  if (const auto* specifier = value.get<Value::SpecifierPointer>())
    return (*specifier)->application;
  if (const auto* list = value.get<Value::ListPointer>(); list && !(*list)->items.empty()) {
    if (const auto* specifier = (*list)->items.front().get<Value::SpecifierPointer>())
      return (*specifier)->application;
  }
  return nullptr;
}

} // namespace

Value Evaluator::evaluateCommand(const Command& command) {
  switch (eventKey(command.term->event)) {
  case eventKey(events::get):
    return command.direct ? evaluateOptional(*command.direct)
                          : propertyOf(frame_->implicitTarget(), {codes::contents, "contents"}, Mode::value);
  case eventKey(events::count):
    return count(command);
  case eventKey(events::exists):
    return exists(command);
  case eventKey(events::run):
    return runCommand(command);
  default:
    if (auto answer = additions_.answer(command))
      return std::move(*answer);
    return sendCommand(command);
  }
}

Value Evaluator::count(const Command& command) {
  if (!command.direct)
    return countOf(frame_->implicitTarget());
  std::optional<Value> elementClass;
  for (const auto& [term, expression] : command.parameters) {
    if (term.code == keywords::elementClass)
      elementClass = operand(*expression);
  }
  const Expression& direct = withoutParentheses(*command.direct);
  if (!elementClass && direct.kind == Expression::Kind::element)
    return countElements(static_cast<const ElementAccess&>(direct));
  const Value value = evaluate(direct, Mode::designation);
  if (!elementClass)
    return countOf(value);
  const auto* wanted = elementClass->get<Value::ClassPointer>();
  if (!wanted)
    throw errors::cannotMake(*elementClass, "class");
  if (const auto* specifier = value.get<Value::SpecifierPointer>(); specifier && (*specifier)->application)
    return countOf(everyElement(*specifier, (*wanted)->code));
  const Value::ListPointer items = listOf(plain(value));
  return static_cast<std::int64_t>(
      std::ranges::count_if(items->items, [&](const Value& item) { return isKindOf(item, (*wanted)->code); }));
}

Value Evaluator::countOf(const Value& given) {
  const Value value = plain(given);
  if (const auto* specifier = value.get<Value::SpecifierPointer>(); specifier && (*specifier)->application) {
    return sender_.send(events::count, *specifier);
  }
  if (const auto* list = value.get<Value::ListPointer>())
    return static_cast<std::int64_t>((*list)->items.size());
  if (const auto* record = value.get<Value::RecordPointer>())
    return static_cast<std::int64_t>((*record)->fields.size());
  if (const auto* text = value.get<Text>())
    return static_cast<std::int64_t>(picker_.characters().count(*text));
  throw errors::notUnderstood(shortSourceForm(value), "count");
}

Value Evaluator::exists(const Command& command) {
  Value value;
  try {
    value = containerOf(command.direct);
  } catch (const ScriptError& error) {
    if (error.number() == errorNumber::noSuchObject || error.number() == errorNumber::invalidIndex)
      return false;
    throw;
  }
  const auto* specifier = value.get<Value::SpecifierPointer>();
  if (specifier && isRootedInTest(**specifier))
    throw TestNeedsValues();
  if (!specifier || !(*specifier)->application || (*specifier)->form == ObjectSpecifier::Form::application)
    return true;
  return sender_.send(events::exists, *specifier);
}

Value Evaluator::runCommand(const Command& command) {
  const Value target = containerOf(command.direct);
  if (const auto* script = target.get<Value::ScriptPointer>()) {
    const std::shared_ptr<ScriptObject> held = *script;
    return runScript(held, {});
  }
  return sendCommand(command);
}

// A parameter that says where something goes is a place, and stays unresolved, as do elements; properties are read.
Value Evaluator::commandParameter(const ParameterTerm& parameter, const Expression& expression) {
  const Expression& inner = withoutParentheses(expression);
  const bool isPlace = parameter.code == keywords::insertionLocation ||
                       inner.kind == Expression::Kind::insertionPoint || inner.kind == Expression::Kind::element ||
                       inner.kind == Expression::Kind::it;
  return outgoing(evaluate(expression, isPlace ? Mode::designation : Mode::value));
}

// A handler of the script with a command's name: `on quit`, `on open x`.
std::optional<Value> Evaluator::ownCommand(const Command& command, const std::optional<Value>& direct) {
  const auto* script = frame_->target.get<Value::ScriptPointer>();
  const std::shared_ptr<ScriptObject> receiver = script ? *script : frame_->self;
  const FoundHandler found = findHandler(receiver, foldedName(command.term->words));
  if (!found.definition)
    return {};
  Arguments arguments;
  arguments.isLabelled = found.definition->isLabelled;
  if (direct && found.definition->direct)
    arguments.direct = *direct;
  else if (direct)
    arguments.positional.push_back(*direct);
  return invoke(found, receiver, std::move(arguments), command.term->words);
}

Value Evaluator::sendCommand(const Command& command) {
  AppleEventMessage message;
  message.code = command.term->event;
  std::shared_ptr<ScriptableApplication> application;
  if (command.direct) {
    message.directObject = outgoing(evaluate(*command.direct, Mode::designation));
    const auto* specifier = message.directObject->get<Value::SpecifierPointer>();
    if (specifier && isRootedInTest(**specifier))
      throw TestNeedsValues();
    application = applicationIn(*message.directObject);
  }
  for (const auto& [term, expression] : command.parameters)
    message.parameters.emplace_back(term.code, commandParameter(term, *expression));
  const Value target = frame_->implicitTarget();
  if (!application)
    application = applicationIn(target);
  if (application)
    return sender_.send(application, std::move(message));
  if (const auto own = ownCommand(command, message.directObject))
    return *own;
  // `activate` and the like without a target are for the script's own host, which has nothing to do.
  const bool isForHost =
      message.code == events::activate || message.code == events::launch || message.code == events::reopen;
  if (isForHost && (!command.direct || message.directObject->is<Value::SpecifierPointer>()))
    return Value::nothing();
  throw errors::notUnderstood(shortSourceForm(message.directObject.value_or(target)), command.term->words);
}

} // namespace tabwright::applescript
