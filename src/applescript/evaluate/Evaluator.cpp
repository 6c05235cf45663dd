// The walk itself. Each node passes through `evaluate` or `execute`, which count steps, mind the stack, and note the
// node's place: a pointer that is put back when a node is done and left where it is when one throws, so that whoever
// catches the error finds the innermost place in it, and evaluation pays two stores per node for that.
#include "applescript/evaluate/Evaluator.h"

#include "applescript/evaluate/Accesses.h"
#include "applescript/evaluate/Calls.h"
#include "applescript/evaluate/Operators.h"
#include "applescript/evaluate/TestNeedsValues.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Names.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"

#include <new>
#include <stdexcept>

namespace tabwright::applescript {

namespace {

void load(Evaluator& run) {
  if (run.script.isLoaded)
    return;
  Frame frame;
  frame.self = frame.owner = run.script.object();
  const Restored<Frame*> current(run.frame, &frame);
  // A failure leaves the script unloaded, so the next run tries all properties again.
  initialize(run, run.script.object());
  run.script.isLoaded = true;
}

template <class Body>
Value guarded(Evaluator& run, Body body) {
  try {
    load(run);
    return lookThroughDeep(body(), ForeignObjects::kept);
  } catch (ScriptError& error) {
    if (run.place)
      error.at(*run.place);
    error.settle(); // whoever catches it may have no script any more
    throw;
  } catch (const std::bad_alloc&) {
    throw errors::outOfMemory();
  } catch (const std::length_error&) {
    // Thrown by containers for sizes that no memory could hold.
    throw errors::outOfMemory();
  }
}

Value dispatch(Evaluator& run, const Expression& expression, Mode mode) {
  using Kind = Expression::Kind;
  switch (expression.kind) {
  case Kind::literal:
    // Shared with the tree, since no literal is of a kind that changes.
    return static_cast<const Literal&>(expression).value;
  case Kind::list: {
    auto list = std::make_shared<List>();
    const auto& items = static_cast<const ListLiteral&>(expression).items;
    list->items.reserve(items.size());
    for (const auto& item : items)
      list->items.push_back(run.evaluate(*item));
    return list;
  }
  case Kind::record: {
    auto record = std::make_shared<Record>();
    const auto& fields = static_cast<const RecordLiteral&>(expression).fields;
    record->fields.reserve(fields.size());
    for (const auto& [label, value] : fields)
      // Of a label given twice the last value counts, in the place of the first.
      record->set(label, run.evaluate(*value));
    return record;
  }
  case Kind::variable:
    return run.frame->read(static_cast<const Variable&>(expression));
  case Kind::me:
    return run.frame->self;
  case Kind::it: {
    Value target = run.frame->implicitTarget();
    const auto* specifier = target.get<Value::SpecifierPointer>();
    // An object by its id is what an application answered: asked for again it would answer the same.
    const bool isSettled = !specifier || (*specifier)->form == ObjectSpecifier::Form::id;
    return mode == Mode::designation || isSettled ? target : run.sender.get(*specifier);
  }
  case Kind::currentApplication: {
    static const Value root{Value::SpecifierPointer(std::make_shared<const ObjectSpecifier>())};
    return root;
  }
  case Kind::application:
    return evaluateApplication(run, static_cast<const ApplicationReference&>(expression));
  case Kind::property:
    return evaluateProperty(run, static_cast<const PropertyAccess&>(expression), mode);
  case Kind::element:
    return evaluateElement(run, static_cast<const ElementAccess&>(expression), mode);
  case Kind::insertionPoint:
    return insertionPoint(run, static_cast<const InsertionPoint&>(expression));
  case Kind::referenceTo:
    return referenceTo(run, static_cast<const ReferenceTo&>(expression));
  case Kind::unary:
    return evaluateUnary(run, static_cast<const Unary&>(expression));
  case Kind::binary:
    return evaluateBinary(run, static_cast<const Binary&>(expression));
  case Kind::coercion:
    return evaluateCoercion(run, static_cast<const Coercion&>(expression));
  case Kind::handlerCall:
    return callHandler(run, static_cast<const HandlerCall&>(expression));
  case Kind::command:
    return evaluateCommand(run, static_cast<const Command&>(expression));
  case Kind::message:
    return evaluateMessage(run, static_cast<const ObjectiveCMessage&>(expression));
  case Kind::parenthesized:
    // The mode passes through: `name of (tab 1 of w)` is one name.
    return run.evaluateOptional(*static_cast<const Parenthesized&>(expression).inner, mode);
  }
  return Value::nothing();
}

} // namespace

Evaluator::Evaluator(const Surroundings& surroundings, const RunLimits& limits, Script& script, std::stop_token stop,
                     std::shared_ptr<platform::Notices> notices)
    : surroundings(surroundings), limits(limits), script(script), budget(limits, std::move(stop)),
      sender(*surroundings.directory, budget, frame, limits.eventTimeout, std::move(notices)),
      picker(surroundings.random, script.textItemDelimiters, attributes) {}

Value Evaluator::run(std::vector<Value> arguments) {
  return guarded(*this, [&] { return runScript(*this, script.object(), std::move(arguments)); });
}

Value Evaluator::call(std::string_view handler, std::vector<Value> arguments) {
  return guarded(*this, [&] {
    const FoundHandler found = findHandler(script.object(), foldedName(handler));
    if (!found.definition)
      throw errors::notUnderstood(script.object()->description(), handler);
    Arguments passed;
    passed.positional = std::move(arguments);
    return invoke(*this, found, script.object(), std::move(passed), handler);
  });
}

CoercionContext Evaluator::coercionContext() const {
  // Of several delimiters all split a text, but only the first joins one.
  if (const auto* list = script.textItemDelimiters.get<Value::ListPointer>())
    return {(*list)->items.empty() ? std::string() : textOf((*list)->items.front())};
  return {textOf(script.textItemDelimiters)};
}

void Evaluator::checkSize(std::size_t bytes) const {
  if (bytes > limits.valueBytes)
    throw errors::outOfMemory();
}

Value Evaluator::evaluate(const Expression& expression, Mode mode) {
  Value value = evaluateOptional(expression, mode);
  if (value.isNothing()) {
    // The expression has been left by now, and is the place all the same.
    place = &expression.range;
    throw errors::noResult();
  }
  return value;
}

Value Evaluator::evaluateOptional(const Expression& expression, Mode mode) {
  budget.step();
  if (stack.isExhausted())
    throw errors::stackOverflow();
  const SourceRange* const outer = std::exchange(place, &expression.range);
  Value value = dispatch(*this, expression, mode);
  place = outer;
  return value;
}

Value Evaluator::containerOf(const ExpressionPointer& container) {
  return lookThrough(container ? evaluate(*container, Mode::designation) : frame->implicitTarget());
}

Value Evaluator::operand(const Expression& expression) {
  Value value = evaluate(expression);
  if (!isPlain(value))
    value = plain(value);
  return value;
}

bool Evaluator::condition(const Expression& expression) {
  const Value value = evaluate(expression);
  if (const auto* boolean = value.get<bool>())
    return *boolean;
  return booleanOf(plain(value));
}

bool Evaluator::isPlain(const Value& value) {
  return !value.is<Value::ReferencePointer>() && !value.is<Value::ForeignPointer>() &&
         !value.is<Value::SpecifierPointer>();
}

Value Evaluator::plain(const Value& given) {
  Value value = plainValue(given);
  requireValue(value);
  // `a reference to name of window 1` and the like; what an application answers names an object, not a property.
  const auto* specifier = value.get<Value::SpecifierPointer>();
  if (specifier && (*specifier)->form == ObjectSpecifier::Form::property)
    value = sender.get(Value::SpecifierPointer(*specifier));
  return value;
}

} // namespace tabwright::applescript
