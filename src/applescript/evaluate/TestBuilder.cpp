#include "applescript/evaluate/TestBuilder.h"

#include "applescript/syntax/Operators.h"
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
  if (const auto* brackets = as<Parenthesized>(expression))
    return build(*brackets->inner);
  if (const auto* unary = as<Unary>(expression); unary && unary->op == Unary::Operator::logicalNot)
    return negation(build(*unary->operand));
  const auto* binary = as<Binary>(expression);
  return binary ? buildBinary(*binary) : isTrue(expression);
}

std::shared_ptr<const SpecifierTest> TestBuilder::isTrue(const Expression& expression) const {
  auto test = std::make_shared<SpecifierTest>();
  test->left = operand_(expression);
  test->right = true;
  return test;
}

std::shared_ptr<const SpecifierTest> TestBuilder::buildBinary(const Binary& expression) const {
  auto test = std::make_shared<SpecifierTest>();
  if (const auto& comparison = comparisonOf(expression.op)) {
    test->comparison = comparison->test;
    test->left = operand_(*expression.left);
    test->right = operand_(*expression.right);
    test->considersCase = considersCase_;
    if (comparison->isDenied)
      return negation(std::move(test));
    return test;
  }
  const bool isBoth = expression.op == Binary::Operator::logicalAnd;
  if (!isBoth && expression.op != Binary::Operator::logicalOr)
    return isTrue(expression);
  test->kind = isBoth ? SpecifierTest::Kind::both : SpecifierTest::Kind::either;
  test->operands = {build(*expression.left), build(*expression.right)};
  return test;
}

} // namespace tabwright::applescript
