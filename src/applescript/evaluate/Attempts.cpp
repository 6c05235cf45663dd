// What a `try` tries. Throwing an error costs as much as a hundred steps, and libraries test values by trying to make
// texts of them, once per record of a list. So where the handler asks nothing of the error and the block is one
// `return`, its expression is attempted: the one failure that is foreseen without going further is told instead of
// thrown.
#include "applescript/evaluate/Evaluator.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"

namespace tabwright::applescript {

namespace {

bool asksNothing(const Try& statement) {
  return !statement.message && !statement.number && !statement.from && !statement.partialResult && !statement.to &&
         !statement.onlyNumber;
}

bool isTextClass(const Value& type) {
  const auto* className = type.get<Value::ClassPointer>();
  return className && (*className)->code == codes::text;
}

} // namespace

Evaluator::Flow Evaluator::executeTried(const Try& statement) {
  if (statement.body.size() != 1 || statement.body.front()->kind != Statement::Kind::returning ||
      !asksNothing(statement))
    return execute(statement.body);
  const auto& returning = static_cast<const Return&>(*statement.body.front());
  if (!returning.value)
    return execute(statement.body);
  budget_.step();
  const SourceRange* const outer = std::exchange(place_, &returning.range);
  std::optional<Value> value = attempt(*returning.value);
  place_ = outer;
  if (value) {
    frame_->returned = std::move(*value);
    return Flow::returned;
  }
  return statement.hasHandler ? execute(statement.handler) : Flow::next;
}

/// The value, or nothing where a record is to become a text. Other failures are thrown.
std::optional<Value> Evaluator::attempt(const Expression& expression) {
  if (expression.kind == Expression::Kind::coercion) {
    const auto& coercion = static_cast<const Coercion&>(expression);
    const Value value = operand(*coercion.operand);
    const Value type = operand(*coercion.type);
    if (value.is<Value::RecordPointer>() && isTextClass(type))
      return std::nullopt;
    return coerced(value, type);
  }
  if (expression.kind != Expression::Kind::binary)
    return evaluateOptional(expression);
  const auto& binary = static_cast<const Binary&>(expression);
  using Operator = Binary::Operator;
  if (binary.op != Operator::logicalAnd && binary.op != Operator::equal && binary.op != Operator::notEqual)
    return evaluateOptional(expression);
  const auto attempted = [this](const Expression& side) {
    std::optional<Value> value = attempt(side);
    if (value && value->is<Value::Nothing>())
      throw errors::noResult();
    return value;
  };
  const std::optional<Value> left = attempted(*binary.left);
  if (!left)
    return std::nullopt;
  if (binary.op == Operator::logicalAnd && !booleanOf(plain(*left)))
    return Value(false);
  const std::optional<Value> right = attempted(*binary.right);
  if (!right)
    return std::nullopt;
  if (binary.op == Operator::logicalAnd)
    return Value(booleanOf(plain(*right)));
  return Value(isEqual(*left, *right) == (binary.op == Operator::equal));
}

} // namespace tabwright::applescript
