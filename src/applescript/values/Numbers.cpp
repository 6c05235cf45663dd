// Integers are exact as long as 64 bits hold the result, and go over to reals where they don't. Reals are written and
// read by the shortest form that gives the same real again (`std::to_chars`), independent of any locale.
#include "applescript/values/Numbers.h"

#include "applescript/values/Errors.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace tabwright::applescript {

namespace {

constexpr double smallestIntegerAsReal = -9223372036854775808.0;

double finite(double value) {
  if (!std::isfinite(value))
    throw errors::numericOverflow();
  return value;
}

Value wholeOrReal(double value) {
  // The bound itself is an integer of 64 bits, its negative no longer.
  if (value >= smallestIntegerAsReal && value < -smallestIntegerAsReal)
    return static_cast<std::int64_t>(value);
  return finite(value);
}

std::optional<std::int64_t> exact(Arithmetic operation, std::int64_t left, std::int64_t right) {
  std::int64_t result = 0;
  bool overflows = false;
  switch (operation) {
  case Arithmetic::add:
    overflows = __builtin_add_overflow(left, right, &result);
    break;
  case Arithmetic::subtract:
    overflows = __builtin_sub_overflow(left, right, &result);
    break;
  case Arithmetic::multiply:
    overflows = __builtin_mul_overflow(left, right, &result);
    break;
  case Arithmetic::integerDivide:
    // The one quotient that 64 bits don't hold; the processor traps on it.
    overflows = right == -1 && left == std::numeric_limits<std::int64_t>::min();
    result = overflows ? 0 : left / right;
    break;
  case Arithmetic::modulo:
    // The same trap, though the remainder is 0 for any number.
    result = right == -1 ? 0 : left % right;
    break;
  case Arithmetic::divide:
  case Arithmetic::power:
    return {};
  }
  if (overflows)
    return {};
  return result;
}

} // namespace

std::string realText(double value) {
  if (std::isnan(value))
    return "NAN";
  if (std::isinf(value))
    return value < 0 ? "-INF" : "INF";
  if (value == 0)
    return std::signbit(value) ? "-0.0" : "0.0";
  char buffer[400];
  const double magnitude = std::abs(value);
  if (magnitude < 10000 && magnitude > 0.0001) {
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed).ptr;
    std::string text(buffer, end);
    // The point tells it from an integer.
    return text.find('.') == std::string::npos ? text + ".0" : text;
  }
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific).ptr;
  std::string text(buffer, end);
  const std::size_t e = text.find('e');
  std::string mantissa = text.substr(0, e);
  if (mantissa.find('.') == std::string::npos)
    mantissa += ".0";
  // `1e+05` becomes `1.0E+5`.
  std::string exponent = text.substr(e + 2);
  exponent.erase(0, std::min(exponent.find_first_not_of('0'), exponent.size() - 1));
  return mantissa + "E" + text[e + 1] + exponent;
}

std::optional<Value> numberFromText(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t start = text.find_first_not_of(blanks);
  if (start == std::string_view::npos)
    return {};
  text = text.substr(start, text.find_last_not_of(blanks) - start + 1);
  // from_chars takes a minus in front, but no plus.
  if (text.front() == '+') {
    text.remove_prefix(1);
    if (text.starts_with('-')) // one sign, not two
      return {};
  }
  const std::string_view digits = text.starts_with('-') ? text.substr(1) : text;
  // from_chars also reads "inf" and "nan", which are no numbers of the language.
  if (digits.empty() || digits.find_first_not_of("0123456789.eE+-") != std::string_view::npos)
    return {};
  const char* end = text.data() + text.size();
  std::int64_t integer = 0;
  if (const auto read = std::from_chars(text.data(), end, integer); read.ec == std::errc{} && read.ptr == end)
    return Value(integer);
  double real = 0;
  if (const auto read = std::from_chars(text.data(), end, real); read.ec == std::errc{} && read.ptr == end)
    return Value(real);
  return {};
}

std::optional<double> asReal(const Value& value) {
  if (const auto* integer = value.get<std::int64_t>())
    return static_cast<double>(*integer);
  if (const auto* real = value.get<double>())
    return *real;
  return {};
}

Value calculate(Arithmetic operation, const Value& left, const Value& right) {
  const double a = asReal(left).value();
  const double b = asReal(right).value();
  const bool divides =
      operation == Arithmetic::divide || operation == Arithmetic::integerDivide || operation == Arithmetic::modulo;
  if (divides && b == 0)
    throw errors::divisionByZero();
  const auto* wholeLeft = left.get<std::int64_t>();
  const auto* wholeRight = right.get<std::int64_t>();
  // Whole operands first: as reals they may lose digits.
  if (wholeLeft && wholeRight) {
    if (const auto result = exact(operation, *wholeLeft, *wholeRight))
      return *result;
  }
  switch (operation) {
  case Arithmetic::add:
    return finite(a + b);
  case Arithmetic::subtract:
    return finite(a - b);
  case Arithmetic::multiply:
    return finite(a * b);
  case Arithmetic::divide:
    return finite(a / b);
  case Arithmetic::integerDivide:
    return wholeOrReal(std::trunc(a / b));
  case Arithmetic::modulo:
    return finite(std::fmod(a, b));
  case Arithmetic::power:
    return finite(std::pow(a, b));
  }
  return {};
}

Value negated(const Value& number) {
  return calculate(Arithmetic::subtract, 0, number);
}

Value rounded(double value, Rounding direction) {
  switch (direction) {
  case Rounding::toNearest: {
    const double nearest = std::round(value);
    const bool isHalfway = std::abs(value - std::trunc(value)) == 0.5;
    // Halves go to the even neighbour.
    return wholeOrReal(isHalfway ? 2 * std::round(value / 2) : nearest);
  }
  case Rounding::up:
    return wholeOrReal(std::ceil(value));
  case Rounding::down:
    return wholeOrReal(std::floor(value));
  case Rounding::towardZero:
    return wholeOrReal(std::trunc(value));
  case Rounding::asTaughtInSchool:
    return wholeOrReal(std::round(value));
  }
  return {};
}

} // namespace tabwright::applescript
