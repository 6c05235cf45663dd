#include "applescript/evaluate/TestBuilder.h"

#include "applescript/values/Errors.h"

namespace tabwright::applescript {

namespace {

std::shared_ptr<const SpecifierTest> negation(std::shared_ptr<const SpecifierTest> operand) {
  auto test = std::make_shared<SpecifierTest>();
  test->kind = SpecifierTest::Kind::negation;
  test->operands.push_back(std::move(operand));
  return test;
}

} // namespace

const Value& TestBuilder::objectUnderTest() {
  static const Value root = [] {
    auto specifier = std::make_shared<ObjectSpecifier>();
    specifier->form = ObjectSpecifier::Form::tested;
    return Value(Value::SpecifierPointer(std::move(specifier)));
  }();
  return root;
}

std::shared_ptr<const SpecifierTest> TestBuilder::build(const Expression& expression) const {
  if (stack_.isExhausted())
    throw errors::stackOverflow();
  if (expression.kind == Expression::Kind::parenthesized)
    return build(*static_cast<const Parenthesized&>(expression).inner);
  if (expression.kind == Expression::Kind::unary) {
    const auto& unary = static_cast<const Unary&>(expression);
    if (unary.op == Unary::Operator::logicalNot)
      return negation(build(*unary.operand));
  }
  if (expression.kind == Expression::Kind::binary)
    return buildBinary(static_cast<const Binary&>(expression));
  return isTrue(expression);
}

std::shared_ptr<const SpecifierTest> TestBuilder::isTrue(const Expression& expression) const {
  auto test = std::make_shared<SpecifierTest>();
  test->left = operand_(expression);
  test->right = true;
  return test;
}

std::shared_ptr<const SpecifierTest> TestBuilder::buildBinary(const Binary& expression) const {
  using Operator = Binary::Operator;
  const auto compare = [&](TestOperator comparison) {
    auto test = std::make_shared<SpecifierTest>();
    test->comparison = comparison;
    test->left = operand_(*expression.left);
    test->right = operand_(*expression.right);
    test->considersCase = considersCase_;
    return test;
  };
  switch (expression.op) {
  case Operator::logicalAnd:
  case Operator::logicalOr: {
    auto test = std::make_shared<SpecifierTest>();
    test->kind = expression.op == Operator::logicalAnd ? SpecifierTest::Kind::both : SpecifierTest::Kind::either;
    test->operands = {build(*expression.left), build(*expression.right)};
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
  case Operator::concatenate:
    return isTrue(expression);
  }
  return nullptr;
}

} // namespace tabwright::applescript
