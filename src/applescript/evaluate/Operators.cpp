// Operators. Their operands are values: references are looked through and properties of objects read, but for `is` and
// `is not`, which see the reference that a loop's variable holds.
#include "applescript/evaluate/Operators.h"

#include "applescript/syntax/Operators.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <cmath>

namespace tabwright::applescript {

namespace {

// A date takes seconds, and gives them when another is subtracted.
std::optional<Value> dateArithmetic(Binary::Operator op, const Value& left, const Value& right) {
  const auto* date = left.get<Date>();
  if (!date || (op != Binary::Operator::add && op != Binary::Operator::subtract))
    return {};
  if (const auto* other = right.get<Date>(); other && op == Binary::Operator::subtract) {
    const double seconds = date->seconds - other->seconds;
    // Whole reals below that are exact as integers.
    if (seconds == std::floor(seconds) && std::abs(seconds) < 1e15)
      return Value(static_cast<std::int64_t>(seconds));
    return Value(seconds);
  }
  const double seconds = realOf(right);
  return Value(Date{op == Binary::Operator::add ? date->seconds + seconds : date->seconds - seconds});
}

Value evaluateArithmetic(Evaluator& run, const Binary& expression, Arithmetic operation) {
  const Value left = run.operand(*expression.left);
  const Value right = run.operand(*expression.right);
  if (const auto result = dateArithmetic(expression.op, left, right))
    return *result;
  return calculate(operation, numberOf(left), numberOf(right));
}

Value evaluateComparison(Evaluator& run, const Binary& expression, const Comparison& comparison) {
  // Not by `operand`, which would look through the references that `isEqual` tells apart.
  if (comparison.test == TestOperator::equals) {
    const Value left = run.evaluate(*expression.left);
    return isEqual(run, left, run.evaluate(*expression.right)) != comparison.isDenied;
  }
  const Value left = run.operand(*expression.left);
  const Value right = run.operand(*expression.right);
  return compare(comparison.test, left, right, run.attributes) != comparison.isDenied;
}

Value evaluateConcatenation(Evaluator& run, const Binary& expression) {
  Value left = run.operand(*expression.left);
  const Value right = run.operand(*expression.right);
  return concatenate(run, std::move(left), right);
}

} // namespace

Value evaluateUnary(Evaluator& run, const Unary& expression) {
  switch (expression.op) {
  case Unary::Operator::logicalNot:
    return !run.condition(*expression.operand);
  case Unary::Operator::negate:
    return negated(numberOf(run.operand(*expression.operand)));
  case Unary::Operator::plus:
    return numberOf(run.operand(*expression.operand));
  }
  return {};
}

Value evaluateBinary(Evaluator& run, const Binary& expression) {
  if (const auto& arithmetic = arithmeticOf(expression.op))
    return evaluateArithmetic(run, expression, *arithmetic);
  if (const auto& comparison = comparisonOf(expression.op))
    return evaluateComparison(run, expression, *comparison);
  if (expression.op == Binary::Operator::concatenate)
    return evaluateConcatenation(run, expression);
  // The right side counts, and is evaluated, only where the left one leaves the answer open.
  const bool isBoth = expression.op == Binary::Operator::logicalAnd;
  return run.condition(*expression.left) == isBoth ? run.condition(*expression.right) : !isBoth;
}

bool isEqual(Evaluator& run, const Value& a, const Value& b) {
  const auto* leftReference = a.get<Value::ReferencePointer>();
  const auto* rightReference = b.get<Value::ReferencePointer>();
  if (leftReference && rightReference && (*leftReference)->isSamePlace(**rightReference))
    return true;
  for (const auto* reference : {leftReference, rightReference}) {
    // A place is no value, even if it holds one that is the same.
    if (reference && !(*reference)->comparesAsValue())
      return false;
  }
  if (run.isPlain(a) && run.isPlain(b))
    return equalValues(a, b, run.attributes);
  return equalValues(run.plain(a), run.plain(b), run.attributes);
}

Value concatenate(Evaluator& run, Value left, const Value& right) {
  const bool rightIsList = right.is<Value::ListPointer>();
  const bool rightIsRecord = right.is<Value::RecordPointer>();
  if (Text* text = left.get<Text>(); text && !rightIsList && !rightIsRecord) {
    // A text on the right is appended from where it is, without a copy.
    const std::string* given = right.text();
    const std::string tail = given ? std::string() : textOf(right, run.coercionContext());
    const std::string_view added = given ? std::string_view(*given) : std::string_view(tail);
    run.checkSize(text->utf8().size() + added.size());
    if (!text->appendUnshared(added)) {
      std::string whole;
      whole.reserve(text->utf8().size() + added.size());
      whole.append(text->utf8()).append(added);
      return Text(std::move(whole));
    }
    return left;
  }
  if (const auto* record = left.get<Value::RecordPointer>(); record && rightIsRecord) {
    auto merged = std::make_shared<Record>((*record)->fields);
    for (const auto& [label, value] : (*right.get<Value::RecordPointer>())->fields) {
      // Of two fields of one label the left one stays.
      if (!merged->find(label))
        merged->fields.emplace_back(label, value);
    }
    run.checkSize(merged->fields.size() * sizeof(merged->fields.front()));
    return merged;
  }
  Value::ListPointer list;
  // Taken over when `left` was its last holder: a chain of `&` makes one list.
  if (auto* whole = left.get<Value::ListPointer>())
    list = whole->use_count() == 1 ? std::move(*whole) : std::make_shared<List>((*whole)->items);
  else
    list = std::make_shared<List>(std::vector<Value>{std::move(left)});
  const Value::ListPointer added = rightIsList || rightIsRecord ? listOf(right) : nullptr;
  run.checkSize((list->items.size() + (added ? added->items.size() : 1)) * sizeof(Value));
  if (added)
    list->items.insert(list->items.end(), added->items.begin(), added->items.end());
  else
    list->items.push_back(right);
  return list;
}

Value evaluateCoercion(Evaluator& run, const Coercion& expression) {
  const Value value = run.operand(*expression.operand);
  return coerced(run, value, run.operand(*expression.type));
}

Value coerced(Evaluator& run, const Value& value, const Value& type) {
  const auto coerceTo = [&](const Value& wanted) {
    const auto* className = wanted.get<Value::ClassPointer>();
    if (!className)
      throw errors::cannotMake(wanted, "class");
    Value result = coerce(value, **className, run.coercionContext());
    // A list that becomes text may be far larger than what it is made of.
    if (const std::string* text = result.text())
      run.checkSize(text->size());
    return result;
  };
  const auto* alternatives = type.get<Value::ListPointer>();
  if (!alternatives)
    return coerceTo(type);
  for (const Value& wanted : (*alternatives)->items) {
    try {
      return coerceTo(wanted);
    } catch (const ScriptError& error) {
      // Only a type that the value has no form in leaves the choice to the next.
      if (error.number() != errorNumber::cannotMake)
        throw;
    }
  }
  throw errors::cannotMake(value, shortSourceForm(type));
}

} // namespace tabwright::applescript
