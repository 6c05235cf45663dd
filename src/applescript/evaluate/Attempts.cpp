// The tried part of a `try`. Throwing an error costs as much as a hundred steps, and libraries test values by trying to
// make texts of them, once per record of a list. So where the handler asks nothing of the error and the block is one
// `return`, its expression is attempted: the one failure that is foreseen without going further is told instead of
// thrown.
#include "applescript/evaluate/Operators.h"
#include "applescript/evaluate/Statements.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"

namespace tabwright::applescript {

namespace {

bool asksNothing(const Try& statement) {
  return !statement.message && !statement.number && !statement.from && !statement.partialResult && !statement.to &&
         !statement.onlyNumber;
}

bool isTextType(const Value& type) {
  const auto* className = type.get<Value::ClassPointer>();
  return className && (*className)->code == codes::text;
}

/// The value, or nothing where a record is to become a text. Other failures are thrown. The order of evaluation and the
/// errors are those of Operators.cpp, which would evaluate the same expression outside of a `try`.
std::optional<Value> attempt(Evaluator& run, const Expression& expression) {
  if (const auto* coercion = as<Coercion>(expression)) {
    const Value value = run.operand(*coercion->operand);
    const Value type = run.operand(*coercion->type);
    if (value.is<Value::RecordPointer>() && isTextType(type))
      return std::nullopt;
    return coerced(run, value, type);
  }
  const auto* binary = as<Binary>(expression);
  using Operator = Binary::Operator;
  if (!binary ||
      (binary->op != Operator::logicalAnd && binary->op != Operator::equal && binary->op != Operator::notEqual))
    return run.evaluateOptional(expression);
  const auto attempted = [&run](const Expression& side) {
    std::optional<Value> value = attempt(run, side);
    if (value && value->is<Value::Nothing>())
      throw errors::noResult();
    return value;
  };
  const std::optional<Value> left = attempted(*binary->left);
  if (!left)
    return std::nullopt;
  if (binary->op == Operator::logicalAnd && !booleanOf(run.plain(*left)))
    return Value(false);
  const std::optional<Value> right = attempted(*binary->right);
  if (!right)
    return std::nullopt;
  if (binary->op == Operator::logicalAnd)
    return Value(booleanOf(run.plain(*right)));
  return Value(isEqual(run, *left, *right) == (binary->op == Operator::equal));
}

} // namespace

std::optional<Flow> executeTried(Evaluator& run, const Try& statement) {
  if (statement.body.size() != 1 || statement.body.front()->kind != Statement::Kind::returning ||
      !asksNothing(statement))
    return run.execute(statement.body);
  const auto& returning = static_cast<const Return&>(*statement.body.front());
  if (!returning.value)
    return run.execute(statement.body);
  // The step and the place of the `return`, which isn't executed as a statement here.
  run.budget.step();
  const SourceRange* const outer = std::exchange(run.place, &returning.range);
  std::optional<Value> value = attempt(run, *returning.value);
  run.place = outer;
  if (value) {
    run.frame->returned = std::move(*value);
    return Flow::returned;
  }
  return std::nullopt;
}

} // namespace tabwright::applescript
