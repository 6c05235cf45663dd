// `a reference to x`. What names something in an application is a specifier already; a place in the script becomes a
// Reference; anything else is its own value. References may outlive the run, so they hold on to what they read from.
#include "applescript/evaluate/Bridge.h"
#include "applescript/evaluate/Evaluator.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::applescript {

Value Evaluator::referenceTo(const ReferenceTo& expression) {
  const Expression& operand = withoutParentheses(*expression.operand);
  switch (operand.kind) {
  case Expression::Kind::variable:
    return referenceToVariable(static_cast<const Variable&>(operand));
  case Expression::Kind::property:
    return referenceToProperty(static_cast<const PropertyAccess&>(operand));
  case Expression::Kind::element:
    return referenceToElement(static_cast<const ElementAccess&>(operand));
  default:
    return evaluate(operand, Mode::designation);
  }
}

Value Evaluator::referenceToVariable(const Variable& variable) {
  switch (variable.place) {
  case Variable::Place::cell:
    frame_->variable(variable); // makes the cell
    return frame_->slots[static_cast<std::size_t>(variable.slot)];
  case Variable::Place::script: {
    const std::shared_ptr<ScriptObject> script = frame_->scriptOf(variable);
    const auto index = static_cast<std::size_t>(variable.slot);
    const auto read = [script, index, name = variable.name] {
      if (script->variables[index].isNothing())
        throw errors::undefinedVariable(name);
      return script->variables[index];
    };
    const auto write = [script, index](Value value) { script->variables[index] = std::move(value); };
    return Value::ReferencePointer(
        std::make_shared<const ComputedReference>(variable.name, Value(script), read, write));
  }
  case Variable::Place::frame:
  case Variable::Place::result:
    break;
  }
  return frame_->read(variable);
}

Value Evaluator::referenceToProperty(const PropertyAccess& property) {
  const Value container = containerOf(property.container);
  const Label& label = property.property;
  const std::string description = fmt::format("{} of {}", label.name, shortSourceForm(container));
  if (const auto* specifier = container.get<Value::SpecifierPointer>()) {
    if ((*specifier)->application || (*specifier)->form != ObjectSpecifier::Form::application)
      return specifierProperty(*specifier, label, Mode::designation);
    const ObjectiveCBridge* bridge = surroundings_.objectiveC;
    const auto find = [bridge, name = label.name] { return findInBridge(bridge, name); };
    return Value::ReferencePointer(std::make_shared<const BridgeReference>(label.name, find));
  }
  const auto place = [container, label]() -> Value* {
    if (const auto* record = container.get<Value::RecordPointer>())
      return (*record)->find(label);
    if (const auto* script = container.get<Value::ScriptPointer>())
      return findProperty(**script, label);
    return nullptr;
  };
  if (!place())
    return propertyOf(container, label, Mode::value);
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

Value Evaluator::referenceToElement(const ElementAccess& element) {
  const Value container = containerOf(element.container);
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return specifierElement(*specifier, element, Mode::designation);
  const auto* list = container.get<Value::ListPointer>();
  const bool isOneItem = element.elementClass.code == codes::item && !element.test &&
                         element.form != ElementAccess::Form::every && element.form != ElementAccess::Form::range;
  if (!list || !isOneItem)
    return elementOf(container, element);
  const std::size_t index = picker_.position((*list)->items.size(), element, keyOf(element), container);
  return Value::ReferencePointer(std::make_shared<const ItemReference>(*list, index));
}

} // namespace tabwright::applescript
