// The walk itself. Each node passes through `evaluate` or `execute`, which count steps, mind the stack, and note the
// node's place: a pointer that is put back when a node is done and left where it is when one throws, so that whoever
// catches the error finds the innermost place in it, and evaluation pays two stores per node for that.
#include "applescript/evaluate/Evaluator.h"

#include "applescript/evaluate/TestNeedsValues.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Names.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"

#include <new>
#include <stdexcept>

namespace tabwright::applescript {

Evaluator::Evaluator(const Surroundings& surroundings, const RunLimits& limits, Script& script, std::stop_token stop,
                     std::shared_ptr<platform::Notices> notices)
    : surroundings_(surroundings), limits_(limits), script_(script), budget_(limits, std::move(stop)),
      sender_(*surroundings.directory, budget_, frame_, limits.eventTimeout, std::move(notices)),
      picker_(surroundings.random, script.textItemDelimiters, attributes_),
      additions_(surroundings, limits, budget_, picker_.characters(), attributes_,
                 [this](const Expression& expression) { return operand(expression); }) {}

template <class Body>
Value Evaluator::guarded(Body body) {
  try {
    load();
    return lookThroughDeep(body(), ForeignObjects::kept);
  } catch (ScriptError& error) {
    if (place_)
      error.at(*place_);
    error.settle(); // whoever catches it may have no script any more
    throw;
  } catch (const std::bad_alloc&) {
    throw errors::outOfMemory();
  } catch (const std::length_error&) {
    throw errors::outOfMemory();
  }
}

Value Evaluator::run(std::vector<Value> arguments) {
  return guarded([&] { return runScript(script_.object(), std::move(arguments)); });
}

Value Evaluator::call(std::string_view handler, std::vector<Value> arguments) {
  return guarded([&] {
    const FoundHandler found = findHandler(script_.object(), foldedName(handler));
    if (!found.definition)
      throw errors::notUnderstood(script_.object()->description(), handler);
    Arguments passed;
    passed.positional = std::move(arguments);
    return invoke(found, script_.object(), std::move(passed), handler);
  });
}

void Evaluator::load() {
  if (script_.isLoaded)
    return;
  Frame frame;
  frame.self = frame.owner = script_.object();
  const Restored<Frame*> current(frame_, &frame);
  initialize(script_.object());
  script_.isLoaded = true;
}

CoercionContext Evaluator::coercionContext() const {
  if (const auto* list = script_.textItemDelimiters.get<Value::ListPointer>())
    return {(*list)->items.empty() ? std::string() : textOf((*list)->items.front())};
  return {textOf(script_.textItemDelimiters)};
}

void Evaluator::checkSize(std::size_t bytes) const {
  if (bytes > limits_.valueBytes)
    throw errors::outOfMemory();
}

Value Evaluator::evaluate(const Expression& expression, Mode mode) {
  Value value = evaluateOptional(expression, mode);
  if (value.isNothing()) {
    place_ = &expression.range;
    throw errors::noResult();
  }
  return value;
}

Value Evaluator::evaluateOptional(const Expression& expression, Mode mode) {
  budget_.step();
  if (stack_.isExhausted())
    throw errors::stackOverflow();
  const SourceRange* const outer = std::exchange(place_, &expression.range);
  Value value = dispatch(expression, mode);
  place_ = outer;
  return value;
}

Value Evaluator::containerOf(const ExpressionPointer& container) {
  return lookThrough(container ? evaluate(*container, Mode::designation) : frame_->implicitTarget());
}

Value Evaluator::operand(const Expression& expression) {
  Value value = evaluate(expression);
  if (!isPlain(value))
    value = plain(value);
  return value;
}

bool Evaluator::isPlain(const Value& value) {
  return !value.is<Value::ReferencePointer>() && !value.is<Value::ForeignPointer>() &&
         !value.is<Value::SpecifierPointer>();
}

Value Evaluator::plain(const Value& given) {
  Value value = plainValue(given);
  if (const auto* specifier = value.get<Value::SpecifierPointer>()) {
    if (isRootedInTest(**specifier))
      throw TestNeedsValues();
    // `a reference to name of window 1` and the like; what an application answers names an object, not a property.
    if ((*specifier)->form == ObjectSpecifier::Form::property)
      value = sender_.get(Value::SpecifierPointer(*specifier));
  }
  return value;
}

Value Evaluator::dispatch(const Expression& expression, Mode mode) {
  using Kind = Expression::Kind;
  switch (expression.kind) {
  case Kind::literal:
    return static_cast<const Literal&>(expression).value;
  case Kind::list: {
    auto list = std::make_shared<List>();
    const auto& items = static_cast<const ListLiteral&>(expression).items;
    list->items.reserve(items.size());
    for (const auto& item : items)
      list->items.push_back(evaluate(*item));
    return list;
  }
  case Kind::record: {
    auto record = std::make_shared<Record>();
    const auto& fields = static_cast<const RecordLiteral&>(expression).fields;
    record->fields.reserve(fields.size());
    for (const auto& [label, value] : fields)
      record->set(label, evaluate(*value));
    return record;
  }
  case Kind::variable:
    return frame_->read(static_cast<const Variable&>(expression));
  case Kind::me:
    return frame_->self;
  case Kind::it: {
    Value target = frame_->implicitTarget();
    const auto* specifier = target.get<Value::SpecifierPointer>();
    const bool isSettled = !specifier || (*specifier)->form == ObjectSpecifier::Form::id;
    return mode == Mode::designation || isSettled ? target : sender_.get(*specifier);
  }
  case Kind::currentApplication: {
    static const Value root{Value::SpecifierPointer(std::make_shared<const ObjectSpecifier>())};
    return root;
  }
  case Kind::application:
    return evaluateApplication(static_cast<const ApplicationReference&>(expression));
  case Kind::property:
    return evaluateProperty(static_cast<const PropertyAccess&>(expression), mode);
  case Kind::element:
    return evaluateElement(static_cast<const ElementAccess&>(expression), mode);
  case Kind::insertionPoint:
    return insertionPoint(static_cast<const InsertionPoint&>(expression));
  case Kind::referenceTo:
    return referenceTo(static_cast<const ReferenceTo&>(expression));
  case Kind::unary:
    return evaluateUnary(static_cast<const Unary&>(expression));
  case Kind::binary:
    return evaluateBinary(static_cast<const Binary&>(expression));
  case Kind::coercion:
    return evaluateCoercion(static_cast<const Coercion&>(expression));
  case Kind::handlerCall:
    return callHandler(static_cast<const HandlerCall&>(expression));
  case Kind::command:
    return evaluateCommand(static_cast<const Command&>(expression));
  case Kind::message:
    return evaluateMessage(static_cast<const ObjectiveCMessage&>(expression));
  case Kind::parenthesized:
    return evaluateOptional(*static_cast<const Parenthesized&>(expression).inner, mode);
  }
  return Value::nothing();
}

} // namespace tabwright::applescript
