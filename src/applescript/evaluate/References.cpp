// `a reference to x`. What names something in an application is a specifier already; a place in the script becomes a
// Reference; anything else is its own value. References may outlive the run, so they hold on to what they read from.
#include "applescript/evaluate/Accesses.h"
#include "applescript/evaluate/Bridge.h"
#include "applescript/evaluate/ScriptMembers.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::applescript {

namespace {

Value referenceToVariable(Evaluator& run, const Variable& variable) {
  switch (variable.place) {
  case Variable::Place::cell:
    run.frame->variable(variable); // makes the cell
    return run.frame->slots[static_cast<std::size_t>(variable.slot)];
  case Variable::Place::script: {
    const std::shared_ptr<ScriptObject> script = run.frame->scriptOf(variable);
    const auto index = static_cast<std::size_t>(variable.slot);
    // The closures hold the script object, as the run's hold on it may end first.
    const auto read = [script, index, name = variable.name] {
      if (script->variables[index].isNothing())
        throw errors::undefinedVariable(name);
      return script->variables[index];
    };
    const auto write = [script, index](Value value) { script->variables[index] = std::move(value); };
    return Value::ReferencePointer(
        std::make_shared<const ComputedReference>(variable.name, Value(script), read, write));
  }
  // The resolver makes cells of the frame's variables that are referred to, so only `result` gets here: a value without
  // a place.
  case Variable::Place::frame:
  case Variable::Place::result:
    break;
  }
  return run.frame->read(variable);
}

Value referenceToProperty(Evaluator& run, const PropertyAccess& property) {
  const Value container = run.containerOf(property.container);
  const Label& label = property.property;
  const std::string description = fmt::format("{} of {}", label.name, shortSourceForm(container));
  if (const auto* specifier = container.get<Value::SpecifierPointer>()) {
    if ((*specifier)->application || (*specifier)->form != ObjectSpecifier::Form::application)
      return specifierProperty(run, *specifier, label, Mode::designation);
    const ObjectiveCBridge* bridge = run.surroundings.objectiveC;
    // Looked up when it is first used, so that a name that the bridge doesn't know is no error before.
    const auto find = [bridge, name = label.name] { return findInBridge(bridge, name); };
    return Value::ReferencePointer(std::make_shared<const BridgeReference>(label.name, find));
  }
  // Found anew for each use, as fields move when a record gets another one.
  const auto place = [container, label]() -> Value* {
    if (const auto* record = container.get<Value::RecordPointer>())
      return (*record)->find(label);
    if (const auto* script = container.get<Value::ScriptPointer>())
      return findProperty(**script, label);
    return nullptr;
  };
  if (!place())
    return propertyOf(run, container, label, Mode::value);
  const auto read = [place, description] {
    const Value* value = place();
    if (!value || value->isNothing())
      throw errors::cannotGet(description);
    return *value;
  };
  const auto write = [place, description](Value value) {
    Value* variable = place();
    if (!variable)
      throw errors::cannotSet(description, value);
    *variable = std::move(value);
  };
  return Value::ReferencePointer(std::make_shared<const ComputedReference>(description, container, read, write));
}

Value referenceToElement(Evaluator& run, const ElementAccess& element) {
  const Value container = run.containerOf(element.container);
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return specifierElement(run, *specifier, element, Mode::designation);
  if (const auto place = itemPlace(run, container, element))
    return Value::ReferencePointer(std::make_shared<const ItemReference>(place->first, place->second));
  return elementOf(run, container, element);
}

} // namespace

Value referenceTo(Evaluator& run, const ReferenceTo& expression) {
  const Expression& operand = withoutParentheses(*expression.operand);
  switch (operand.kind) {
  case Expression::Kind::variable:
    return referenceToVariable(run, static_cast<const Variable&>(operand));
  case Expression::Kind::property:
    return referenceToProperty(run, static_cast<const PropertyAccess&>(operand));
  case Expression::Kind::element:
    return referenceToElement(run, static_cast<const ElementAccess&>(operand));
  default:
    return run.evaluate(operand, Mode::designation);
  }
}

} // namespace tabwright::applescript
