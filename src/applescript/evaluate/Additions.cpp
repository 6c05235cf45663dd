// The commands with parameters of their own: `delay`, `offset`, `random number`, `round`, `ASCII character`.
#include "applescript/evaluate/Commands.h"
#include "applescript/evaluate/Evaluator.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/SourceForm.h"

#include <algorithm>
#include <cmath>

namespace tabwright::applescript {

namespace {

constexpr FourCharCode searchedParameter = fourCharCode("psof");
constexpr FourCharCode textParameter = fourCharCode("psin");
constexpr FourCharCode fromParameter = fourCharCode("from");
constexpr FourCharCode toParameter = fourCharCode("to  ");
constexpr FourCharCode roundingParameter = fourCharCode("dire");

Rounding roundingOf(const Value& value) {
  if (const auto* constant = value.get<Value::EnumeratorPointer>()) {
    switch ((*constant)->code) {
    case fourCharCode("up  "):
      return Rounding::up;
    case fourCharCode("down"):
      return Rounding::down;
    case fourCharCode("tozr"):
      return Rounding::towardZero;
    case fourCharCode("near"):
      return Rounding::toNearest;
    case fourCharCode("half"):
      return Rounding::asTaughtInSchool;
    default:
      break;
    }
  }
  throw errors::cannotMake(value, "constant");
}

} // namespace

void Evaluator::delay(const Command& command) {
  constexpr double longest = 1e9;
  const double seconds = command.direct ? realOf(operand(*command.direct)) : 0;
  const auto time = std::chrono::duration<double>(seconds > 0 ? std::min(seconds, longest) : 0);
  if (mustEnd())
    throw errors::userCancelled();
  surroundings_.sleep(std::chrono::duration_cast<std::chrono::nanoseconds>(time), stop_);
  if (mustEnd())
    throw errors::userCancelled();
}

// 1-based, in characters; 0 when it isn't there.
Value Evaluator::offset(const Command& command) {
  const auto searched = parameterOf(command, searchedParameter);
  const auto given = parameterOf(command, textParameter);
  if (!searched || !given)
    throw errors::missingParameter(searched ? "in" : "of", "offset");
  const Value whole = given->is<Text>() ? *given : Value(textOf(*given));
  const Text& text = *whole.get<Text>();
  const auto match = TextSearch(text.utf8(), attributes_).find(textOf(*searched), 0);
  return match ? static_cast<std::int64_t>(characters_.charactersBefore(text, match->offset)) + 1 : std::int64_t{0};
}

double Evaluator::randomFraction() {
  return std::clamp(surroundings_.random(), 0.0, std::nextafter(1.0, 0.0));
}

// A real from 0 to 1, or a number between two: an integer when both are, both ends included. A number alone is the
// upper end, above 0.
Value Evaluator::randomNumber(const Command& command) {
  const Value upTo = command.direct ? numberOf(operand(*command.direct)) : Value::nothing();
  const auto givenFrom = parameterOf(command, fromParameter);
  const auto givenTo = parameterOf(command, toParameter);
  if (upTo.isNothing() && !givenFrom && !givenTo)
    return randomFraction();
  const Value from = givenFrom ? numberOf(*givenFrom) : Value(0);
  const Value to = givenTo ? numberOf(*givenTo) : upTo.isNothing() ? Value(100) : upTo;
  const auto* low = from.get<std::int64_t>();
  const auto* high = to.get<std::int64_t>();
  if (low && high) {
    const auto [least, most] = std::minmax(*low, *high);
    const double width = static_cast<double>(most) - static_cast<double>(least) + 1;
    const double chosen = static_cast<double>(least) + std::floor(randomFraction() * width);
    return rounded(std::min(chosen, static_cast<double>(most)), Rounding::toNearest);
  }
  const double start = *asReal(from);
  return calculate(Arithmetic::add, from, (*asReal(to) - start) * randomFraction());
}

Value Evaluator::roundNumber(const Command& command) {
  if (!command.direct)
    throw errors::missingParameter("direct", "round");
  const Value number = numberOf(operand(*command.direct));
  const auto direction = parameterOf(command, roundingParameter);
  const Rounding rounding = direction ? roundingOf(*direction) : Rounding::toNearest;
  return number.is<std::int64_t>() ? number : rounded(*number.get<double>(), rounding);
}

Value Evaluator::asciiCharacter(const Command& command) {
  const std::int64_t code = command.direct ? integerOf(operand(*command.direct)) : -1;
  if (code < 0 || code > 127)
    throw errors::cannotMake(code, "character");
  return std::string(1, static_cast<char>(code));
}

Value Evaluator::asciiNumber(const Command& command) {
  const std::string text = command.direct ? textOf(operand(*command.direct)) : std::string();
  if (text.empty())
    throw errors::cannotMake(text, "number");
  return std::int64_t{static_cast<unsigned char>(text.front())};
}

} // namespace tabwright::applescript
