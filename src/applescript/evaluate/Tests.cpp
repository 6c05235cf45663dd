// `whose`. Of objects in an application, the condition becomes a tree that travels with the event: bare properties in
// it are written as properties of the object under test, everything else is evaluated now. A condition that computes
// with such a property can't travel (TestNeedsValues), and is evaluated here like that of a `whose` on a list.
#include "applescript/evaluate/Evaluator.h"
#include "applescript/evaluate/TestNeedsValues.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"

namespace tabwright::applescript {

namespace {

const Value& objectUnderTest() {
  static const Value root = [] {
    auto specifier = std::make_shared<ObjectSpecifier>();
    specifier->form = ObjectSpecifier::Form::tested;
    return Value(Value::SpecifierPointer(std::move(specifier)));
  }();
  return root;
}

std::shared_ptr<const SpecifierTest> negation(std::shared_ptr<const SpecifierTest> operand) {
  auto test = std::make_shared<SpecifierTest>();
  test->kind = SpecifierTest::Kind::negation;
  test->operands.push_back(std::move(operand));
  return test;
}

} // namespace

bool Evaluator::passes(const Value& item, const Expression& test) {
  const Restored<Value> target(frame_->target, lookThrough(item));
  return condition(test);
}

std::shared_ptr<const SpecifierTest> Evaluator::specifierTest(const Expression& test) {
  const Restored<Value> target(frame_->target, objectUnderTest());
  return buildTest(test);
}

Value Evaluator::testOperand(const Expression& expression) {
  Value value = lookThrough(evaluate(expression));
  if (const auto* specifier = value.get<Value::SpecifierPointer>(); specifier && isRootedInTest(**specifier))
    return value;
  return outgoing(plain(value));
}

std::shared_ptr<const SpecifierTest> Evaluator::buildTest(const Expression& expression) {
  if (stack_.isExhausted())
    throw errors::stackOverflow();
  if (expression.kind == Expression::Kind::parenthesized)
    return buildTest(*static_cast<const Parenthesized&>(expression).inner);
  if (expression.kind == Expression::Kind::unary) {
    const auto& unary = static_cast<const Unary&>(expression);
    if (unary.op == Unary::Operator::logicalNot)
      return negation(buildTest(*unary.operand));
  }
  if (expression.kind == Expression::Kind::binary)
    return buildComparison(static_cast<const Binary&>(expression));
  auto test = std::make_shared<SpecifierTest>();
  test->left = testOperand(expression);
  test->right = true;
  return test;
}

std::shared_ptr<const SpecifierTest> Evaluator::buildComparison(const Binary& expression) {
  using Operator = Binary::Operator;
  const auto compare = [&](TestOperator comparison) {
    auto test = std::make_shared<SpecifierTest>();
    test->comparison = comparison;
    test->left = testOperand(*expression.left);
    test->right = testOperand(*expression.right);
    test->considersCase = attributes_.considersCase;
    return test;
  };
  switch (expression.op) {
  case Operator::logicalAnd:
  case Operator::logicalOr: {
    auto test = std::make_shared<SpecifierTest>();
    test->kind = expression.op == Operator::logicalAnd ? SpecifierTest::Kind::both : SpecifierTest::Kind::either;
    test->operands = {buildTest(*expression.left), buildTest(*expression.right)};
    return test;
  }
  case Operator::equal:
    return compare(TestOperator::equals);
  case Operator::notEqual:
    return negation(compare(TestOperator::equals));
  case Operator::less:
    return compare(TestOperator::lessThan);
  case Operator::lessOrEqual:
    return compare(TestOperator::atMost);
  case Operator::greater:
    return compare(TestOperator::greaterThan);
  case Operator::greaterOrEqual:
    return compare(TestOperator::atLeast);
  case Operator::contains:
    return compare(TestOperator::contains);
  case Operator::doesNotContain:
    return negation(compare(TestOperator::contains));
  case Operator::isIn:
    return compare(TestOperator::isContainedBy);
  case Operator::isNotIn:
    return negation(compare(TestOperator::isContainedBy));
  case Operator::beginsWith:
    return compare(TestOperator::beginsWith);
  case Operator::endsWith:
    return compare(TestOperator::endsWith);
  case Operator::add:
  case Operator::subtract:
  case Operator::multiply:
  case Operator::divide:
  case Operator::integerDivide:
  case Operator::modulo:
  case Operator::power:
  case Operator::concatenate: {
    auto test = std::make_shared<SpecifierTest>();
    test->left = outgoing(operand(expression));
    test->right = true;
    return test;
  }
  }
  return nullptr;
}

} // namespace tabwright::applescript
