#pragma once

#include "applescript/evaluate/Evaluator.h"

/// Operators. Operands are values: references are looked through and properties of objects read.
namespace tabwright::applescript {

/// Logical operators want booleans or what stands for one, signs and arithmetic numbers, or dates and seconds.
Value evaluateUnary(Evaluator& run, const Unary& expression);
Value evaluateBinary(Evaluator& run, const Binary& expression);
Value evaluateCoercion(Evaluator& run, const Coercion& expression);

/// `is` and `is not` see the reference that a loop's variable holds: two are equal when they name one place, and a
/// reference equals a value only if it compares as one (Reference::comparesAsValue). May send a `get` for a property of
/// an object.
bool isEqual(Evaluator& run, const Value& a, const Value& b);
/// A text on the left and anything but a list or record makes a text, two records a record, everything else a list.
/// `left` is taken over: what nobody else holds, such as the result of the `&` before, grows where it is. −108 for a
/// result larger than the run may make.
Value concatenate(Evaluator& run, Value left, const Value& right);
/// `value as type`, both evaluated. A list of types stands for the first that works; −1700 when none does.
Value coerced(Evaluator& run, const Value& value, const Value& type);

} // namespace tabwright::applescript
