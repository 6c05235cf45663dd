// The commands that come with every system rather than with an application: those that scripts may use here, and the
// errors of the others. Each is a row of the table at the end.
#include "applescript/terminology/language/ScriptingAdditions.h"

#include "applescript/evaluate/Calls.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/SourceForm.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_map>

namespace tabwright::applescript {

namespace {

constexpr FourCharCode searchedParameter = fourCharCode("psof");
constexpr FourCharCode textParameter = fourCharCode("psin");
constexpr FourCharCode fromParameter = fourCharCode("from");
constexpr FourCharCode toParameter = fourCharCode("to  ");
constexpr FourCharCode roundingParameter = fourCharCode("dire");

std::optional<Value> direct(Evaluator& run, const Command& command) {
  return command.direct ? std::optional(run.operand(*command.direct)) : std::nullopt;
}

std::optional<Value> parameter(Evaluator& run, const Command& command, FourCharCode code) {
  for (const auto& [term, expression] : command.parameters) {
    if (term.code == code)
      return run.operand(*expression);
  }
  return {};
}

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

// Known by name all the same, so that the error says what is missing instead of pointing at the syntax.
Value refuse(Evaluator&, const Command& command) {
  throw errors::notAvailable(command.term->words);
}

Value beep(Evaluator&, const Command&) {
  return Value::nothing();
}

Value currentDate(Evaluator& run, const Command&) {
  return Date{run.surroundings.now()};
}

Value log(Evaluator& run, const Command& command) {
  const Value value = direct(run, command).value_or(Value::nothing());
  const std::string* text = value.text();
  // A text as it is, anything else in source form.
  run.surroundings.log(text ? *text : sourceFormUpTo(value, run.limits.valueBytes));
  return Value::nothing();
}

Value delay(Evaluator& run, const Command& command) {
  // Nanoseconds of 64 bits hold this many seconds.
  constexpr double longest = 1e9;
  const auto given = direct(run, command);
  const double seconds = given ? realOf(*given) : 0;
  const auto time = std::chrono::duration<double>(seconds > 0 ? std::min(seconds, longest) : 0);
  run.budget.require();
  // A stop ends the waiting early, without an error: that is told by the look behind it.
  run.surroundings.sleep(std::chrono::duration_cast<std::chrono::nanoseconds>(time), run.budget.stop());
  run.budget.require();
  return Value::nothing();
}

// 1-based, in characters; 0 when it isn't there.
Value offset(Evaluator& run, const Command& command) {
  const auto searched = parameter(run, command, searchedParameter);
  const auto given = parameter(run, command, textParameter);
  if (!searched || !given)
    throw errors::missingParameter(searched ? "in" : "of", "offset");
  const Value whole = given->is<Text>() ? *given : Value(textOf(*given));
  const Text& text = *whole.get<Text>();
  // Searches count bytes, and scripts count the characters that people see.
  const auto match = TextSearch(text.utf8(), run.attributes).find(textOf(*searched), 0);
  return match ? static_cast<std::int64_t>(run.picker.characters().charactersBefore(text, match->offset)) + 1
               : std::int64_t{0};
}

double randomFraction(Evaluator& run) {
  return std::clamp(run.surroundings.random(), 0.0, std::nextafter(1.0, 0.0));
}

// A real from 0 to 1, or a number between two: an integer when both are, both ends included. A number alone is the
// upper end, above 0.
Value randomNumber(Evaluator& run, const Command& command) {
  const auto given = direct(run, command);
  const Value upTo = given ? numberOf(*given) : Value::nothing();
  const auto givenFrom = parameter(run, command, fromParameter);
  const auto givenTo = parameter(run, command, toParameter);
  if (upTo.isNothing() && !givenFrom && !givenTo)
    return randomFraction(run);
  const Value from = givenFrom ? numberOf(*givenFrom) : Value(0);
  const Value to = givenTo ? numberOf(*givenTo) : upTo.isNothing() ? Value(100) : upTo;
  const auto* low = from.get<std::int64_t>();
  const auto* high = to.get<std::int64_t>();
  if (low && high) {
    const auto [least, most] = std::minmax(*low, *high);
    // Between two integers there may be more than 64 bits hold; as a real the sum can come out above the end.
    const double width = static_cast<double>(most) - static_cast<double>(least) + 1;
    const double chosen = static_cast<double>(least) + std::floor(randomFraction(run) * width);
    return rounded(std::min(chosen, static_cast<double>(most)), Rounding::toNearest);
  }
  const double start = *asReal(from);
  return calculate(Arithmetic::add, from, (*asReal(to) - start) * randomFraction(run));
}

Value round(Evaluator& run, const Command& command) {
  const auto given = direct(run, command);
  if (!given)
    throw errors::missingParameter("direct", "round");
  const Value number = numberOf(*given);
  const auto direction = parameter(run, command, roundingParameter);
  const Rounding rounding = direction ? roundingOf(*direction) : Rounding::toNearest;
  // An integer is whole already, and as a real could lose digits.
  return number.is<std::int64_t>() ? number : rounded(*number.get<double>(), rounding);
}

Value asciiCharacter(Evaluator& run, const Command& command) {
  const auto given = direct(run, command);
  const std::int64_t code = given ? integerOf(*given) : -1;
  if (code < 0 || code > 127)
    throw errors::cannotMake(code, "character");
  return std::string(1, static_cast<char>(code));
}

Value asciiNumber(Evaluator& run, const Command& command) {
  const auto given = direct(run, command);
  const std::string text = given ? textOf(*given) : std::string();
  if (text.empty())
    throw errors::cannotMake(text, "number");
  // The first byte, which is a character only in ASCII.
  return std::int64_t{static_cast<unsigned char>(text.front())};
}

/// A command by the words of its row in the terminology.
struct Row {
  std::string_view words;
  Value (*answer)(Evaluator&, const Command&);
};

const Row* find(EventCode event) {
  static constexpr Row rows[]{
      {"ASCII character", asciiCharacter},
      {"ASCII number", asciiNumber},
      {"beep", beep},
      {"choose from list", refuse},
      {"current date", currentDate},
      {"delay", delay},
      {"display dialog", refuse},
      {"display notification", refuse},
      {"do shell script", refuse},
      {"log", log},
      {"offset", offset},
      {"random number", randomNumber},
      {"read", refuse},
      {"round", round},
      {"run script", refuse},
      {"say", refuse},
      {"set the clipboard to", refuse},
      {"the clipboard", refuse},
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

} // namespace

std::optional<Value> answerOfAddition(Evaluator& run, const Command& command) {
  const Row* row = find(command.term->event);
  return row ? std::optional(row->answer(run, command)) : std::nullopt;
}

} // namespace tabwright::applescript
