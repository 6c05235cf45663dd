#pragma once

#include "applescript/evaluate/StackGuard.h"
#include "applescript/syntax/Tree.h"
#include "applescript/values/ObjectSpecifier.h"

#include <functional>
#include <memory>

namespace tabwright::applescript {

/// Makes the condition of a `whose` into the tree that travels with an event. Bare properties in it are properties of
/// the object under test; whatever else stands beside an operator is evaluated now.
class TestBuilder {
public:
  /// Evaluates one side of a comparison: to a specifier rooted in the object under test, or to a plain value. Throws
  /// TestNeedsValues where the application can't be asked.
  using Operand = std::function<Value(const Expression&)>;

  TestBuilder(bool considersCase, const StackGuard& stack, Operand operand)
      : considersCase_(considersCase), stack_(stack), operand_(std::move(operand)) {}

  [[nodiscard]] std::shared_ptr<const SpecifierTest> build(const Expression& test) const;

  /// The root of all specifiers in a test.
  [[nodiscard]] static const Value& objectUnderTest();

private:
  [[nodiscard]] std::shared_ptr<const SpecifierTest> buildBinary(const Binary& test) const;
  [[nodiscard]] std::shared_ptr<const SpecifierTest> isTrue(const Expression& test) const;

  bool considersCase_;
  const StackGuard& stack_;
  Operand operand_;
};

} // namespace tabwright::applescript
