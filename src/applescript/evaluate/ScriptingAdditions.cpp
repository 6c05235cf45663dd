#include "applescript/evaluate/ScriptingAdditions.h"

#include "applescript/terminology/language/ScriptingAdditions.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/SourceForm.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_map>

namespace tabwright::applescript {

/// A command by the words of its row in the terminology.
struct ScriptingAdditions::Row {
  std::string_view words;
  Value (ScriptingAdditions::*answer)(const Command&);
};

const ScriptingAdditions::Row* ScriptingAdditions::find(EventCode event) {
  static constexpr Row rows[]{
      {"ASCII character", &ScriptingAdditions::asciiCharacter},
      {"ASCII number", &ScriptingAdditions::asciiNumber},
      {"beep", &ScriptingAdditions::beep},
      {"choose from list", &ScriptingAdditions::refuse},
      {"current date", &ScriptingAdditions::currentDate},
      {"delay", &ScriptingAdditions::delay},
      {"display dialog", &ScriptingAdditions::refuse},
      {"display notification", &ScriptingAdditions::refuse},
      {"do shell script", &ScriptingAdditions::refuse},
      {"log", &ScriptingAdditions::log},
      {"offset", &ScriptingAdditions::offset},
      {"random number", &ScriptingAdditions::randomNumber},
      {"read", &ScriptingAdditions::refuse},
      {"round", &ScriptingAdditions::round},
      {"run script", &ScriptingAdditions::refuse},
      {"say", &ScriptingAdditions::refuse},
      {"set the clipboard to", &ScriptingAdditions::refuse},
      {"the clipboard", &ScriptingAdditions::refuse},
  };
  // By event, since dictionaries and raw codes name these commands too.
  static const auto byEvent = [] {
    std::unordered_map<std::uint64_t, const Row*> index;
    for (const Row& row : rows)
      index.emplace(eventKey(std::ranges::find(language::scriptingAdditions, row.words, &Term::words)->event), &row);
    return index;
  }();
  const auto found = byEvent.find(eventKey(event));
  return found == byEvent.end() ? nullptr : found->second;
}

std::optional<Value> ScriptingAdditions::answer(const Command& command) {
  const Row* row = find(command.term->event);
  return row ? std::optional((this->*row->answer)(command)) : std::nullopt;
}

std::optional<Value> ScriptingAdditions::direct(const Command& command) const {
  return command.direct ? std::optional(operand_(*command.direct)) : std::nullopt;
}

std::optional<Value> ScriptingAdditions::parameter(const Command& command, FourCharCode code) const {
  for (const auto& [term, expression] : command.parameters) {
    if (term.code == code)
      return operand_(*expression);
  }
  return {};
}

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

Value ScriptingAdditions::refuse(const Command& command) {
  throw errors::notAvailable(command.term->words);
}

Value ScriptingAdditions::beep(const Command&) {
  return Value::nothing();
}

Value ScriptingAdditions::currentDate(const Command&) {
  return Date{surroundings_.now()};
}

Value ScriptingAdditions::log(const Command& command) {
  const Value value = direct(command).value_or(Value::nothing());
  const std::string* text = value.text();
  surroundings_.log(text ? *text : sourceFormUpTo(value, limits_.valueBytes));
  return Value::nothing();
}

Value ScriptingAdditions::delay(const Command& command) {
  constexpr double longest = 1e9;
  const auto given = direct(command);
  const double seconds = given ? realOf(*given) : 0;
  const auto time = std::chrono::duration<double>(seconds > 0 ? std::min(seconds, longest) : 0);
  budget_.require();
  surroundings_.sleep(std::chrono::duration_cast<std::chrono::nanoseconds>(time), budget_.stop());
  budget_.require();
  return Value::nothing();
}

// 1-based, in characters; 0 when it isn't there.
Value ScriptingAdditions::offset(const Command& command) {
  const auto searched = parameter(command, searchedParameter);
  const auto given = parameter(command, textParameter);
  if (!searched || !given)
    throw errors::missingParameter(searched ? "in" : "of", "offset");
  const Value whole = given->is<Text>() ? *given : Value(textOf(*given));
  const Text& text = *whole.get<Text>();
  const auto match = TextSearch(text.utf8(), attributes_).find(textOf(*searched), 0);
  return match ? static_cast<std::int64_t>(characters_.charactersBefore(text, match->offset)) + 1 : std::int64_t{0};
}

double ScriptingAdditions::randomFraction() const {
  return std::clamp(surroundings_.random(), 0.0, std::nextafter(1.0, 0.0));
}

// A real from 0 to 1, or a number between two: an integer when both are, both ends included. A number alone is the
// upper end, above 0.
Value ScriptingAdditions::randomNumber(const Command& command) {
  const auto given = direct(command);
  const Value upTo = given ? numberOf(*given) : Value::nothing();
  const auto givenFrom = parameter(command, fromParameter);
  const auto givenTo = parameter(command, toParameter);
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

Value ScriptingAdditions::round(const Command& command) {
  const auto given = direct(command);
  if (!given)
    throw errors::missingParameter("direct", "round");
  const Value number = numberOf(*given);
  const auto direction = parameter(command, roundingParameter);
  const Rounding rounding = direction ? roundingOf(*direction) : Rounding::toNearest;
  return number.is<std::int64_t>() ? number : rounded(*number.get<double>(), rounding);
}

Value ScriptingAdditions::asciiCharacter(const Command& command) {
  const auto given = direct(command);
  const std::int64_t code = given ? integerOf(*given) : -1;
  if (code < 0 || code > 127)
    throw errors::cannotMake(code, "character");
  return std::string(1, static_cast<char>(code));
}

Value ScriptingAdditions::asciiNumber(const Command& command) {
  const auto given = direct(command);
  const std::string text = given ? textOf(*given) : std::string();
  if (text.empty())
    throw errors::cannotMake(text, "number");
  return std::int64_t{static_cast<unsigned char>(text.front())};
}

} // namespace tabwright::applescript
