#pragma once

#include "applescript/evaluate/Evaluator.h"

/// Operators. Operands are values: references are looked through and properties of objects read.
namespace tabwright::applescript {

Value evaluateUnary(Evaluator& run, const Unary& expression);
Value evaluateBinary(Evaluator& run, const Binary& expression);
Value evaluateCoercion(Evaluator& run, const Coercion& expression);

/// `is` and `is not` see the reference that a loop's variable holds: two are equal when they name one place.
bool isEqual(Evaluator& run, const Value& a, const Value& b);
/// `left` is taken over: what nobody else holds, such as the result of the `&` before, grows where it is.
Value concatenate(Evaluator& run, Value left, const Value& right);
/// A list of types stands for the first that works.
Value coerced(Evaluator& run, const Value& value, const Value& type);

} // namespace tabwright::applescript
