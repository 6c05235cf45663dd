// Operators. Their operands are values: references are looked through and properties of objects read, but for `is` and
// `is not`, which see the reference that a loop's variable holds.
#include "applescript/syntax/Operators.h"

#include "applescript/evaluate/Evaluator.h"
#include "applescript/evaluate/TestNeedsValues.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <cmath>

namespace tabwright::applescript {

Value Evaluator::evaluateUnary(const Unary& expression) {
  switch (expression.op) {
  case Unary::Operator::logicalNot:
    return !condition(*expression.operand);
  case Unary::Operator::negate:
    return negated(numberOf(operand(*expression.operand)));
  case Unary::Operator::plus:
    return numberOf(operand(*expression.operand));
  }
  return {};
}

Value Evaluator::evaluateBinary(const Binary& expression) {
  using Operator = Binary::Operator;
  switch (expression.op) {
  case Operator::add:
  case Operator::subtract:
  case Operator::multiply:
  case Operator::divide:
  case Operator::integerDivide:
  case Operator::modulo:
  case Operator::power:
    return evaluateArithmetic(expression);
  case Operator::concatenate:
    return evaluateConcatenation(expression);
  case Operator::equal:
    return isEqual(*expression.left, *expression.right);
  case Operator::notEqual:
    return !isEqual(*expression.left, *expression.right);
  case Operator::less:
  case Operator::lessOrEqual:
  case Operator::greater:
  case Operator::greaterOrEqual:
  case Operator::contains:
  case Operator::doesNotContain:
  case Operator::isIn:
  case Operator::isNotIn:
  case Operator::beginsWith:
  case Operator::endsWith:
    return evaluateComparison(expression);
  case Operator::logicalAnd:
    return condition(*expression.left) && condition(*expression.right);
  case Operator::logicalOr:
    return condition(*expression.left) || condition(*expression.right);
  }
  return {};
}

namespace {

Arithmetic arithmeticOf(Binary::Operator op) {
  switch (op) {
  case Binary::Operator::subtract:
    return Arithmetic::subtract;
  case Binary::Operator::multiply:
    return Arithmetic::multiply;
  case Binary::Operator::divide:
    return Arithmetic::divide;
  case Binary::Operator::integerDivide:
    return Arithmetic::integerDivide;
  case Binary::Operator::modulo:
    return Arithmetic::modulo;
  case Binary::Operator::power:
    return Arithmetic::power;
  default:
    return Arithmetic::add;
  }
}

// A date takes seconds, and gives them when another is subtracted.
std::optional<Value> dateArithmetic(Binary::Operator op, const Value& left, const Value& right) {
  const auto* date = left.get<Date>();
  if (!date || (op != Binary::Operator::add && op != Binary::Operator::subtract))
    return {};
  if (const auto* other = right.get<Date>(); other && op == Binary::Operator::subtract) {
    const double seconds = date->seconds - other->seconds;
    if (seconds == std::floor(seconds) && std::abs(seconds) < 1e15)
      return Value(static_cast<std::int64_t>(seconds));
    return Value(seconds);
  }
  const double seconds = realOf(right);
  return Value(Date{op == Binary::Operator::add ? date->seconds + seconds : date->seconds - seconds});
}

} // namespace

Value Evaluator::evaluateArithmetic(const Binary& expression) {
  const Value left = operand(*expression.left);
  const Value right = operand(*expression.right);
  if (const auto result = dateArithmetic(expression.op, left, right))
    return *result;
  return calculate(arithmeticOf(expression.op), numberOf(left), numberOf(right));
}

bool Evaluator::isEqual(const Expression& left, const Expression& right) {
  const Value a = evaluate(left);
  return isEqual(a, evaluate(right));
}

bool Evaluator::isEqual(const Value& a, const Value& b) {
  const auto* leftReference = a.get<Value::ReferencePointer>();
  const auto* rightReference = b.get<Value::ReferencePointer>();
  if (leftReference && rightReference && (*leftReference)->isSamePlace(**rightReference))
    return true;
  for (const auto* reference : {leftReference, rightReference}) {
    if (reference && !(*reference)->comparesAsValue())
      return false;
  }
  if (isPlain(a) && isPlain(b))
    return equalValues(a, b, attributes_);
  return equalValues(plain(a), plain(b), attributes_);
}

Value Evaluator::evaluateComparison(const Binary& expression) {
  const Value left = operand(*expression.left);
  const Value right = operand(*expression.right);
  const Comparison& comparison = *comparisonOf(expression.op);
  return compare(comparison.test, left, right, attributes_) != comparison.isDenied;
}

Value Evaluator::evaluateConcatenation(const Binary& expression) {
  Value left = operand(*expression.left);
  const Value right = operand(*expression.right);
  return concatenate(std::move(left), right);
}

// `left` is taken over: what nobody else holds, such as the result of the `&` before, grows where it is.
Value Evaluator::concatenate(Value left, const Value& right) {
  const bool rightIsList = right.is<Value::ListPointer>();
  const bool rightIsRecord = right.is<Value::RecordPointer>();
  if (Text* text = left.get<Text>(); text && !rightIsList && !rightIsRecord) {
    const std::string* given = right.text();
    const std::string tail = given ? std::string() : textOf(right, coercionContext());
    const std::string_view added = given ? std::string_view(*given) : std::string_view(tail);
    checkSize(text->utf8().size() + added.size());
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
      if (!merged->find(label))
        merged->fields.emplace_back(label, value);
    }
    checkSize(merged->fields.size() * sizeof(merged->fields.front()));
    return merged;
  }
  Value::ListPointer list;
  if (auto* whole = left.get<Value::ListPointer>())
    list = whole->use_count() == 1 ? std::move(*whole) : std::make_shared<List>((*whole)->items);
  else
    list = std::make_shared<List>(std::vector<Value>{std::move(left)});
  const Value::ListPointer added = rightIsList || rightIsRecord ? listOf(right) : nullptr;
  checkSize((list->items.size() + (added ? added->items.size() : 1)) * sizeof(Value));
  if (added)
    list->items.insert(list->items.end(), added->items.begin(), added->items.end());
  else
    list->items.push_back(right);
  return list;
}

Value Evaluator::evaluateCoercion(const Coercion& expression) {
  const Value value = operand(*expression.operand);
  return coerced(value, operand(*expression.type));
}

Value Evaluator::coerced(const Value& value, const Value& type) {
  const auto coerceTo = [&](const Value& wanted) {
    const auto* className = wanted.get<Value::ClassPointer>();
    if (!className)
      throw errors::cannotMake(wanted, "class");
    Value result = coerce(value, **className, coercionContext());
    if (const std::string* text = result.text())
      checkSize(text->size());
    return result;
  };
  const auto* alternatives = type.get<Value::ListPointer>();
  if (!alternatives)
    return coerceTo(type);
  for (const Value& wanted : (*alternatives)->items) {
    try {
      return coerceTo(wanted);
    } catch (const ScriptError& error) {
      if (error.number() != errorNumber::cannotMake)
        throw;
    }
  }
  throw errors::cannotMake(value, shortSourceForm(type));
}

} // namespace tabwright::applescript
