#pragma once

#include "applescript/values/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::applescript {

/// A real in its shortest form: `0.5`, `1.0`; from 10,000 up, and from 0.0001 down, with an exponent: `1.0E+20`. Reals
/// that aren't finite are `INF`, `-INF` and `NAN`. A finite one is read from the text as the same real again.
[[nodiscard]] std::string realText(double value);

/// The number that a text spells, blanks around it aside: `12` is an integer, `1.5` and `1E3` are reals, as are whole
/// numbers beyond 64 bits. The decimal mark is a point in any locale, and nothing may part thousands. Nothing for any
/// other text, and for a number that no real can hold.
[[nodiscard]] std::optional<Value> numberFromText(std::string_view text);

/// An integer or real as a real, which beyond 2^53 may lose digits; nothing for any other value.
[[nodiscard]] std::optional<double> asReal(const Value& value);

/// `integerDivide` (`div`) rounds toward zero; `modulo` (`mod`) has the sign of the left operand.
enum class Arithmetic { add, subtract, multiply, divide, integerDivide, modulo, power };
/// Both operands must be integers or reals. Whole results beyond 64 bits become reals; `divide` and `power` are always
/// real. Throws ScriptError −2701 for a division by zero, −2702 for a result that no real can hold.
[[nodiscard]] Value calculate(Arithmetic operation, const Value& left, const Value& right);
/// The number from 0: that of the lowest integer is a real.
[[nodiscard]] Value negated(const Value& number);

/// Halves go to the even neighbour with `toNearest`, away from zero with `asTaughtInSchool`; `up` and `down` are toward
/// the infinities.
enum class Rounding { toNearest, up, down, towardZero, asTaughtInSchool };
/// A whole number: an integer where it fits 64 bits, else a real. −2702 for a value that isn't finite.
[[nodiscard]] Value rounded(double value, Rounding direction);

} // namespace tabwright::applescript
