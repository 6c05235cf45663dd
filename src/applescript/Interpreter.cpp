// The language from outside. Source is checked to be UTF-8 here, before anything reads it, so that no later part meets
// a byte that belongs to no character. Variables get their places in `compile`, once for all runs. Each run gets an
// Evaluator of its own; what lasts from one run to the next (properties, delimiters) is the Script's.
#include "applescript/Interpreter.h"

#include "applescript/evaluate/Evaluator.h"
#include "applescript/syntax/Printer.h"
#include "platform/Sleep.h"
#include "platform/Utf8.h"

#include <fmt/core.h>

#include <ctime>
#include <optional>
#include <random>
#include <utility>

namespace tabwright::applescript {

namespace {

double secondsOnWallClock() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  constexpr std::time_t secondsTo2001 = 978307200;
  // Read as if it were universal time, the local calendar gives seconds on the wall clock.
  return static_cast<double>(timegm(&local) - secondsTo2001);
}

double randomFraction() {
  // One for each thread, since runs on several threads draw at once.
  static thread_local std::mt19937_64 generator{std::random_device{}()};
  return std::uniform_real_distribution<double>(0, 1)(generator);
}

std::optional<ScriptError> notText(const std::string& source) {
  const std::optional<std::size_t> place = platform::malformedByte(source);
  if (!place)
    return std::nullopt;
  return ScriptError(ScriptError::Stage::syntax, errorNumber::unknownToken,
                     fmt::format("A script is text in UTF-8, but the byte {:02X} belongs to no character.",
                                 static_cast<unsigned char>(source[*place])),
                     {*place, 1});
}

} // namespace

struct Interpreter::State {
  Surroundings surroundings;
  RunLimits limits;
};

Interpreter::Interpreter(Surroundings surroundings, RunLimits limits)
    : state_(std::make_shared<State>(State{std::move(surroundings), limits})) {
  // Functions that the surroundings leave out get their defaults here, so that a run calls without looking.
  Surroundings& world = state_->surroundings;
  if (!world.sleep)
    world.sleep = platform::sleepUnlessStopped;
  if (!world.now)
    world.now = secondsOnWallClock;
  if (!world.random)
    world.random = randomFraction;
  if (!world.log)
    world.log = [](std::string_view) {};
}

Interpreter::~Interpreter() = default;

std::unique_ptr<SyntaxTree> Interpreter::parsed(std::string source) const {
  if (std::optional<ScriptError> error = notText(source))
    throw *error;
  ParseResult parsed = parse(std::move(source), *state_->surroundings.directory);
  if (!parsed.tree)
    throw parsed.errors.front();
  return std::move(parsed.tree);
}

CompiledScript Interpreter::compile(std::string source) {
  return CompiledScript(new Script(parsed(std::move(source))));
}

std::string Interpreter::formatted(std::string source) const {
  return print(*parsed(std::move(source)));
}

std::vector<ScriptError> Interpreter::check(std::string source) const {
  if (std::optional<ScriptError> error = notText(source))
    return {std::move(*error)};
  return parse(std::move(source), *state_->surroundings.directory).errors;
}

Value Interpreter::run(Script& script, std::vector<Value> arguments, std::stop_token stop,
                       std::shared_ptr<platform::Notices> notices) {
  return Evaluator(state_->surroundings, state_->limits, script, std::move(stop), std::move(notices))
      .run(std::move(arguments));
}

Value Interpreter::call(Script& script, std::string_view handler, std::vector<Value> arguments, std::stop_token stop,
                        std::shared_ptr<platform::Notices> notices) {
  return Evaluator(state_->surroundings, state_->limits, script, std::move(stop), std::move(notices))
      .call(handler, std::move(arguments));
}

void ScriptDeleter::operator()(Script* script) const {
  delete script;
}

} // namespace tabwright::applescript
