// `set` and `copy`. Lists and records are changed where they are, for all who share them. Two things are minded beside
// the rules of the language: appending to a variable's list or text (`set x to x & y`) doesn't copy it when nobody else
// can see it, and a list doesn't come to hold itself: what would close a ring is stored as a copy (but not where `set
// contents of r` writes through a reference).
#include "applescript/evaluate/Accesses.h"
#include "applescript/evaluate/Operators.h"
#include "applescript/evaluate/ScriptMembers.h"
#include "applescript/evaluate/Statements.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/Dates.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

#include <algorithm>
#include <functional>
#include <ranges>

namespace tabwright::applescript {

namespace {

// Looks at a bounded number of values: a ring that is longer than that is possible, and only costs its memory.
bool leadsTo(const Value& value, const void* holder, std::size_t& looks) {
  if (looks == 0)
    return false;
  --looks;
  // A list is walked no further than there are looks: a loop that collects the items of a long list comes here with
  // that list each time.
  const auto anyOf = [&](const auto& parts, auto valueOf) {
    return std::ranges::any_of(parts | std::views::take(looks),
                               [&](const auto& part) { return leadsTo(valueOf(part), holder, looks); });
  };
  if (const auto* list = value.get<Value::ListPointer>())
    return list->get() == holder || anyOf((*list)->items, std::identity());
  if (const auto* record = value.get<Value::RecordPointer>())
    return record->get() == holder ||
           anyOf((*record)->fields, [](const auto& field) -> const Value& { return field.second; });
  if (const auto* reference = value.get<Value::ReferencePointer>())
    return reference->get() == holder || leadsTo((*reference)->holder(), holder, looks);
  return false;
}

// References in the copy would lead back to the holder all the same, so it has their values instead.
Value withoutRing(Value value, const void* holder) {
  std::size_t looks = 100;
  return leadsTo(value, holder, looks) ? lookThroughDeep(value, ForeignObjects::kept).deepCopy() : std::move(value);
}

bool sameVariable(const Variable& left, const Expression& right) {
  const auto* other = as<Variable>(right);
  return other && left.place != Variable::Place::result && left.place == other->place && left.slot == other->slot &&
         left.scriptDepth == other->scriptDepth;
}

// `&` of a text and a list or record makes a list.
bool joinsToText(const Value& value) {
  return !value.is<Value::ListPointer>() && !value.is<Value::RecordPointer>();
}

// `set x to x & a & b`, from the right end of the chain to its start, which must be the variable itself. False, with
// nothing evaluated, in any other case.
bool appendInPlace(Evaluator& run, const Variable& variable, const Expression& value) {
  std::vector<const Expression*> parts;
  const Expression* first = &withoutParentheses(value);
  for (const auto* binary = as<Binary>(*first); binary && binary->op == Binary::Operator::concatenate;
       binary = as<Binary>(*first)) {
    parts.push_back(binary->right.get());
    first = &withoutParentheses(*binary->left);
  }
  if (parts.empty() || !sameVariable(variable, *first))
    return false;
  const bool isList = run.frame->variable(variable).is<Value::ListPointer>();
  if (!isList && !run.frame->variable(variable).is<Text>())
    return false;

  // The parts are evaluated with the left side held, as the operator would; then the variable's own is let go of.
  Value left = run.frame->variable(variable);
  std::vector<Value> added;
  for (auto part = parts.rbegin(); part != parts.rend(); ++part)
    added.push_back(run.operand(**part));
  run.frame->setResult(Value::nothing());
  Value& slot = run.frame->variable(variable);
  // A part may have set the variable by calling a handler: the value from before counts, as it does for the operator.
  const bool isUnchanged =
      isList ? slot.is<Value::ListPointer>() && *slot.get<Value::ListPointer>() == *left.get<Value::ListPointer>()
             : slot.is<Text>() && slot.get<Text>()->isSameObject(*left.get<Text>());
  if (!isUnchanged || (!isList && !std::ranges::all_of(added, joinsToText))) {
    for (const Value& part : added)
      left = concatenate(run, std::move(left), part);
    assignToVariable(run, variable, std::move(left));
    return true;
  }
  if (!isList) {
    std::string tail;
    for (const Value& part : added)
      tail += textOf(part, run.coercionContext());
    run.checkSize(left.text()->size() + tail.size());
    // With this holder gone the variable may be the only one left.
    left = {};
    if (Text& text = *slot.get<Text>(); !text.appendUnshared(tail))
      text = Text(text.utf8() + tail);
    return true;
  }
  left = {};
  Value::ListPointer& list = *slot.get<Value::ListPointer>();
  if (list.use_count() != 1)
    list = std::make_shared<List>(list->items);
  for (const Value& part : added) {
    const Value::ListPointer items = listOf(part);
    run.checkSize((list->items.size() + items->items.size()) * sizeof(Value));
    list->items.insert(list->items.end(), items->items.begin(), items->items.end());
  }
  return true;
}

void assignToProperty(Evaluator& run, const PropertyAccess& target, Value&& value) {
  if (target.property.code == codes::textItemDelimiters) {
    const Value delimiters = lookThroughDeep(value, ForeignObjects::unwrapped);
    // A value that is no text is refused now and not at the next use.
    if (!delimiters.is<Value::ListPointer>())
      static_cast<void>(textOf(delimiters));
    const Value::ListPointer list = listOf(delimiters);
    for (const Value& delimiter : list->items)
      static_cast<void>(textOf(delimiter));
    // A copy, since the script may go on changing the list.
    run.script.textItemDelimiters = delimiters.deepCopy();
    return;
  }
  Value container = target.container ? run.evaluate(*target.container, Mode::designation) : run.frame->implicitTarget();
  // Written to where a reference or an object leads; of anything else the contents are the thing itself.
  if (target.property.code == codes::contents && target.container) {
    if (const auto* reference = container.get<Value::ReferencePointer>()) {
      const Value holder = (*reference)->holder();
      if (const auto* list = holder.get<Value::ListPointer>())
        value = withoutRing(std::move(value), list->get());
      return (*reference)->assign(std::move(value));
    }
    if (const auto* specifier = container.get<Value::SpecifierPointer>()) {
      run.sender.set(*specifier, value);
      return;
    }
    return assignTo(run, withoutParentheses(*target.container), std::move(value));
  }
  container = lookThrough(std::move(container));
  if (const auto* object = objectIn(container); object && target.property.code != 0) {
    run.sender.set(propertyOf(*object, target.property.code), value);
    return;
  }
  if (const auto* record = container.get<Value::RecordPointer>()) {
    if (Value* field = (*record)->find(target.property)) {
      const Value former = std::exchange(*field, withoutRing(std::move(value), record->get()));
      return;
    }
  } else if (const auto* script = container.get<Value::ScriptPointer>()) {
    if (Value* property = findProperty(**script, target.property)) {
      const Value former = std::exchange(*property, std::move(value));
      return;
    }
  } else if (const auto* date = container.get<Date>(); date && target.container) {
    // A date can't be changed where it is: a new one is put where the expression has this one from.
    if (const auto changed = withDateProperty(*date, target.property.code, run.plain(value)))
      return assignTo(run, withoutParentheses(*target.container), Value(*changed));
  }
  throw errors::cannotSet(fmt::format("{} of {}", target.property.name, shortSourceForm(container)), value);
}

void assignToElement(Evaluator& run, const ElementAccess& target, Value&& value) {
  const Value container = run.containerOf(target.container);
  if (const auto* object = objectIn(container)) {
    // A condition that was tested here may have come to one object, which can be set, or to a list, which can't.
    const auto element = specifierElement(run, *object, target, Mode::designation);
    if (const auto* place = element.get<Value::SpecifierPointer>()) {
      run.sender.set(*place, value);
      return;
    }
  }
  const auto place = itemPlace(run, container, target);
  if (!place)
    throw errors::cannotSet(fmt::format("{} of {}", classWords(target.elementClass), shortSourceForm(container)),
                            value);
  const auto& [list, index] = *place;
  const Value former = std::exchange(list->items[index], withoutRing(std::move(value), list.get()));
}

void assignToEnd(Evaluator& run, const InsertionPoint& target, Value&& value) {
  // Lists have no place beside an item, only their two ends.
  const bool isBeside = target.form == InsertionPoint::Form::before || target.form == InsertionPoint::Form::after;
  const Value container = run.containerOf(target.container);
  if (container.is<Value::SpecifierPointer>()) {
    const Value place = insertionPoint(run, target);
    if (const auto* specifier = place.get<Value::SpecifierPointer>()) {
      run.sender.set(*specifier, value);
      return;
    }
  }
  const auto* list = container.get<Value::ListPointer>();
  if (!list || isBeside)
    throw errors::cannotSet(fmt::format("end of {}", shortSourceForm(container)), value);
  std::vector<Value>& items = (*list)->items;
  run.checkSize((items.size() + 1) * sizeof(Value));
  items.insert(target.form == InsertionPoint::Form::end ? items.end() : items.begin(),
               withoutRing(std::move(value), list->get()));
}

void assignPattern(Evaluator& run, const std::vector<ExpressionPointer>& targets, const Value& value) {
  const Value whole = run.plain(value);
  const auto* list = whole.get<Value::ListPointer>();
  // Taken out first, so that `set {a, b} to {b, a}` and targets that change the list do what they say.
  std::vector<Value> items;
  for (std::size_t index = 0; index < targets.size(); ++index) {
    if (!list || index >= (*list)->items.size())
      throw errors::cannotGet(fmt::format("item {} of {}", index + 1, shortSourceForm(whole)));
    items.push_back((*list)->items[index]);
  }
  for (std::size_t index = 0; index < targets.size(); ++index)
    assignTo(run, *targets[index], std::move(items[index]));
}

} // namespace

void assign(Evaluator& run, const Assignment& statement) {
  const auto* variable = as<Variable>(std::as_const(*statement.target));
  const bool isCopy = statement.form == Assignment::Form::copy;
  if (variable && !isCopy && appendInPlace(run, *variable, *statement.value)) {
    run.frame->setResult(*variable);
    return;
  }
  Value value = run.evaluate(*statement.value);
  if (isCopy)
    value = lookThroughDeep(value, ForeignObjects::kept).deepCopy();
  // The result of the last statement would be a second holder of the list that is being replaced.
  run.frame->setResult(Value::nothing());
  if (variable) {
    assignToVariable(run, *variable, std::move(value));
    run.frame->setResult(*variable);
    return;
  }
  assignTo(run, *statement.target, Value(value));
  run.frame->setResult(std::move(value));
}

void assignTo(Evaluator& run, const Expression& target, Value&& value) {
  using Kind = Expression::Kind;
  switch (target.kind) {
  case Kind::variable:
    return assignToVariable(run, static_cast<const Variable&>(target), std::move(value));
  case Kind::property:
    return assignToProperty(run, static_cast<const PropertyAccess&>(target), std::move(value));
  case Kind::element:
    return assignToElement(run, static_cast<const ElementAccess&>(target), std::move(value));
  case Kind::insertionPoint:
    return assignToEnd(run, static_cast<const InsertionPoint&>(target), std::move(value));
  case Kind::list:
    return assignPattern(run, static_cast<const ListLiteral&>(target).items, value);
  case Kind::record: {
    const Value whole = run.plain(value);
    for (const auto& [label, part] : static_cast<const RecordLiteral&>(target).fields)
      assignTo(run, *part, propertyOf(run, whole, label, Mode::value));
    return;
  }
  case Kind::parenthesized:
    return assignTo(run, *static_cast<const Parenthesized&>(target).inner, std::move(value));
  case Kind::literal:
  case Kind::me:
  case Kind::it:
  case Kind::currentApplication:
  case Kind::application:
  case Kind::referenceTo:
  case Kind::unary:
  case Kind::binary:
  case Kind::coercion:
  case Kind::handlerCall:
  case Kind::command:
  case Kind::message:
    throw errors::cannotSet(shortSourceForm(run.evaluate(target, Mode::designation)), value);
  }
}

void assignToVariable(Evaluator& run, const Variable& variable, Value&& value) {
  if (variable.place == Variable::Place::result)
    throw errors::cannotSet(variable.name, value);
  Value& slot = run.frame->variable(variable);
  if (variable.place == Variable::Place::cell) {
    const Value& cell = run.frame->slots[static_cast<std::size_t>(variable.slot)];
    value = withoutRing(std::move(value), cell.get<Value::ReferencePointer>()->get());
  }
  // The former value may hold script objects and the like whose end changes the slots: it ends after the exchange.
  const Value former = std::exchange(slot, std::move(value));
}

} // namespace tabwright::applescript
