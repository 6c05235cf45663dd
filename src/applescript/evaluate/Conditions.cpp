// The condition of a `whose` as the tree that travels with an event. Bare properties in it are properties of the object
// under test; whatever else stands beside an operator is evaluated now.
#include "applescript/evaluate/Accesses.h"
#include "applescript/evaluate/TestNeedsValues.h"
#include "applescript/syntax/Operators.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"

namespace tabwright::applescript {

namespace {

std::shared_ptr<const SpecifierTest> build(Evaluator& run, const Expression& expression);

std::shared_ptr<const SpecifierTest> negation(std::shared_ptr<const SpecifierTest> operand) {
  // Events know no denied comparisons, only a `not` around one.
  auto test = std::make_shared<SpecifierTest>();
  test->kind = SpecifierTest::Kind::negation;
  test->operands.push_back(std::move(operand));
  return test;
}

/// One side of a comparison: a specifier rooted in the object under test, or a plain value.
Value side(Evaluator& run, const Expression& expression) {
  // A bare property comes to a specifier that hangs from the tested object, since that is the target here. An operator
  // or a coercion around it asks for its value, and throws TestNeedsValues.
  const Value value = lookThrough(run.evaluate(expression));
  const auto* specifier = value.get<Value::SpecifierPointer>();
  return specifier && isRootedInTest(**specifier) ? value : outgoing(run.plain(value));
}

// `whose visible`: a test is made of comparisons, so the property is compared with true.
std::shared_ptr<const SpecifierTest> isTrue(Evaluator& run, const Expression& expression) {
  auto test = std::make_shared<SpecifierTest>();
  test->left = side(run, expression);
  test->right = true;
  return test;
}

std::shared_ptr<const SpecifierTest> buildBinary(Evaluator& run, const Binary& expression) {
  auto test = std::make_shared<SpecifierTest>();
  if (const auto& comparison = comparisonOf(expression.op)) {
    test->comparison = comparison->test;
    test->left = side(run, *expression.left);
    test->right = side(run, *expression.right);
    // The one attribute that events carry; the rest hold for comparisons in the script.
    test->considersCase = run.attributes.considersCase;
    if (comparison->isDenied)
      return negation(std::move(test));
    return test;
  }
  const bool isBoth = expression.op == Binary::Operator::logicalAnd;
  if (!isBoth && expression.op != Binary::Operator::logicalOr)
    return isTrue(run, expression);
  test->kind = isBoth ? SpecifierTest::Kind::both : SpecifierTest::Kind::either;
  test->operands = {build(run, *expression.left), build(run, *expression.right)};
  return test;
}

std::shared_ptr<const SpecifierTest> build(Evaluator& run, const Expression& expression) {
  if (run.stack.isExhausted())
    throw errors::stackOverflow();
  if (const auto* brackets = as<Parenthesized>(expression))
    return build(run, *brackets->inner);
  if (const auto* unary = as<Unary>(expression); unary && unary->op == Unary::Operator::logicalNot)
    return negation(build(run, *unary->operand));
  const auto* binary = as<Binary>(expression);
  return binary ? buildBinary(run, *binary) : isTrue(run, expression);
}

} // namespace

std::shared_ptr<const SpecifierTest> specifierTest(Evaluator& run, const Expression& test) {
  // Shared by all runs: specifiers never change.
  static const Value objectUnderTest = [] {
    auto specifier = std::make_shared<ObjectSpecifier>();
    specifier->form = ObjectSpecifier::Form::tested;
    return Value(Value::SpecifierPointer(std::move(specifier)));
  }();
  const Restored<Value> target(run.frame->target, objectUnderTest);
  return build(run, test);
}

} // namespace tabwright::applescript
