#pragma once

#include "applescript/values/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::applescript {

/// A real in its shortest form: `0.5`, `1.0`; from 10,000 up and below 0.0001 with an exponent, `1.0E+20`.
[[nodiscard]] std::string realText(double value);

/// The number that a text spells, blanks around it aside: `12` is an integer, `1.5` and `1E3` are reals, as are whole
/// numbers beyond 64 bits. Nothing for any other text.
[[nodiscard]] std::optional<Value> numberFromText(std::string_view text);

/// An integer or real as a real; nothing for any other value.
[[nodiscard]] std::optional<double> asReal(const Value& value);

enum class Arithmetic { add, subtract, multiply, divide, integerDivide, modulo, power };
/// Both operands must be integers or reals. Whole results beyond 64 bits become reals; `divide` and `power` are always
/// real. Throws ScriptError −2701 for a division by zero, −2702 for a result that no real can hold.
[[nodiscard]] Value calculate(Arithmetic operation, const Value& left, const Value& right);
[[nodiscard]] Value negated(const Value& number);

enum class Rounding { toNearest, up, down, towardZero, asTaughtInSchool };
/// A whole number: an integer where it fits 64 bits, else a real.
[[nodiscard]] Value rounded(double value, Rounding direction);

} // namespace tabwright::applescript
