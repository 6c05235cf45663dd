// Statements that steer: each tells its block's runner whether to go on, to leave the loop, or to leave the handler.
// A block that changes something for its inside (the target, the timeout, the rules of text comparison) puts it back
// however it ends.
#include "applescript/evaluate/Statements.h"

#include "applescript/evaluate/Calls.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"

#include <fmt/core.h>

#include <algorithm>
#include <limits>
#include <new>

namespace tabwright::applescript {

namespace {

Flow executeIf(Evaluator& run, const If& statement) {
  for (const auto& branch : statement.branches) {
    if (run.condition(*branch.condition))
      return run.execute(branch.body);
  }
  return statement.otherwise ? run.execute(*statement.otherwise) : Flow::next;
}

Flow executeTell(Evaluator& run, const Tell& statement) {
  // Unresolved: the events inside name the object anew, wherever it is by then.
  const Restored<Value> target(run.frame->target, lookThrough(run.evaluate(*statement.target, Mode::designation)));
  return run.execute(statement.body);
}

Flow executeTry(Evaluator& run, const Try& statement) {
  // Kept, so that the handler runs outside of the `catch`, with the exception gone.
  std::optional<ScriptError> caught;
  std::optional<Flow> tried;
  try {
    tried = executeTried(run, statement);
  } catch (ScriptError& error) {
    caught = std::move(error);
  } catch (const std::bad_alloc&) {
    caught = errors::outOfMemory();
  }
  if (tried)
    return *tried;
  if (!caught)
    return statement.hasHandler ? run.execute(statement.handler) : Flow::next;
  caught->at(*run.place);
  run.place = &statement.range;
  // A run that is being ended can't be kept alive by a handler of its own.
  if (run.budget.isSpent())
    throw *caught;
  if (!statement.hasHandler)
    return Flow::next;
  if (statement.onlyNumber && integerOf(run.operand(*statement.onlyNumber)) != caught->number())
    throw *caught;
  // Variables for parts that the error lacks are defined all the same.
  const auto valueOr = [](const std::shared_ptr<const Value>& value, const Value& otherwise) {
    return value ? *value : otherwise;
  };
  if (statement.message)
    assignToVariable(run, *statement.message, caught->message());
  if (statement.number)
    assignToVariable(run, *statement.number, caught->number());
  if (statement.from)
    assignToVariable(run, *statement.from, valueOr(caught->offendingObject, {}));
  if (statement.partialResult)
    assignToVariable(run, *statement.partialResult, valueOr(caught->partialResult, Value::list({})));
  if (statement.to)
    assignToVariable(run, *statement.to, valueOr(caught->expectedType, {}));
  return run.execute(statement.handler);
}

[[noreturn]] void raise(Evaluator& run, const RaiseError& statement) {
  constexpr std::int64_t lowest = std::numeric_limits<int>::min();
  constexpr std::int64_t highest = std::numeric_limits<int>::max();
  std::string message;
  int number = errorNumber::userError;
  if (statement.message)
    message = textOf(run.operand(*statement.message), run.coercionContext());
  // Error numbers are of 32 bits; a script may give more.
  if (statement.number)
    number = static_cast<int>(std::clamp(integerOf(run.operand(*statement.number)), lowest, highest));
  if (!statement.message) {
    if (number == errorNumber::userCancelled)
      message = errors::userCancelled().sentence();
    else if (statement.number)
      message = fmt::format("An error of type {} has occurred.", number);
    else
      message = "An unknown error has occurred.";
  }
  ScriptError error = errors::of(number, std::move(message));
  const auto valueOf = [&](const ExpressionPointer& expression) -> std::shared_ptr<const Value> {
    return expression ? std::make_shared<const Value>(run.evaluate(*expression)) : nullptr;
  };
  error.offendingObject = valueOf(statement.from);
  error.partialResult = valueOf(statement.partialResult);
  error.expectedType = valueOf(statement.to);
  throw error;
}

Flow executeConsidering(Evaluator& run, const Considering& statement) {
  using Attribute = Considering::Attribute;
  // The others change nothing: no folding here makes one character of two, and an answer is always waited for.
  static constexpr std::pair<Attribute, bool TextAttributes::*> flags[] = {
      {Attribute::textCase, &TextAttributes::considersCase},
      {Attribute::diacriticals, &TextAttributes::considersDiacriticals},
      {Attribute::hyphens, &TextAttributes::considersHyphens},
      {Attribute::punctuation, &TextAttributes::considersPunctuation},
      {Attribute::whiteSpace, &TextAttributes::considersWhiteSpace},
      {Attribute::numericStrings, &TextAttributes::considersNumericStrings},
  };
  TextAttributes attributes = run.attributes;
  for (const auto& [attribute, flag] : flags) {
    if (std::ranges::count(statement.considered, attribute) > 0)
      attributes.*flag = true;
    if (std::ranges::count(statement.ignored, attribute) > 0)
      attributes.*flag = false;
  }
  const Restored<TextAttributes> current(run.attributes, attributes);
  return run.execute(statement.body);
}

Flow executeTimeout(Evaluator& run, const Timeout& statement) {
  // Nanoseconds of 64 bits hold this many seconds, and a deadline that far off.
  constexpr double longest = 1e9;
  const double seconds = realOf(run.operand(*statement.seconds));
  const auto timeout = std::chrono::duration_cast<std::chrono::nanoseconds>(
      std::chrono::duration<double>(seconds > 0 ? std::min(seconds, longest) : 0));
  const Restored<std::chrono::nanoseconds> current(run.sender.timeout, timeout);
  return run.execute(statement.body);
}

Flow dispatch(Evaluator& run, const Statement& statement) {
  using Kind = Statement::Kind;
  switch (statement.kind) {
  case Kind::expression:
    run.frame->setResult(run.evaluateOptional(*static_cast<const ExpressionStatement&>(statement).expression));
    return Flow::next;
  case Kind::set:
    assign(run, static_cast<const Assignment&>(statement));
    return Flow::next;
  case Kind::ifElse:
    return executeIf(run, static_cast<const If&>(statement));
  case Kind::repeat:
    return executeRepeat(run, static_cast<const Repeat&>(statement));
  case Kind::exitRepeat:
    return Flow::exitRepeat;
  case Kind::continueHandler:
    run.frame->setResult(continueCall(run, static_cast<const ContinueStatement&>(statement)));
    return Flow::next;
  case Kind::tell:
    return executeTell(run, static_cast<const Tell&>(statement));
  case Kind::tryBlock:
    return executeTry(run, static_cast<const Try&>(statement));
  case Kind::returning: {
    const auto& value = static_cast<const Return&>(statement).value;
    run.frame->returned = value ? run.evaluateOptional(*value) : Value::nothing();
    return Flow::returned;
  }
  case Kind::error:
    raise(run, static_cast<const RaiseError&>(statement));
  case Kind::considering:
    return executeConsidering(run, static_cast<const Considering&>(statement));
  case Kind::timeout:
    return executeTimeout(run, static_cast<const Timeout&>(statement));
  case Kind::transaction: {
    const auto& transaction = static_cast<const Transaction&>(statement);
    if (transaction.session)
      run.evaluate(*transaction.session); // for what it does and how it fails
    return run.execute(transaction.body);
  }
  case Kind::usingTerms:
    return run.execute(static_cast<const UsingTerms&>(statement).body);
  case Kind::script: {
    const auto& definition = static_cast<const ScriptDefinition&>(statement);
    Value script = instantiate(run, *definition.layout, run.frame->owner);
    if (definition.binding)
      assignToVariable(run, *definition.binding, Value(script));
    run.frame->setResult(std::move(script));
    return Flow::next;
  }
  // The parser, the resolver and the loading of the script have taken these in.
  case Kind::declare:
  case Kind::property:
  case Kind::handler:
  case Kind::use:
    return Flow::next;
  }
  return Flow::next;
}

} // namespace

Flow Evaluator::execute(const Block& block) {
  for (const auto& statement : block) {
    if (const Flow flow = execute(*statement); flow != Flow::next)
      return flow;
  }
  return Flow::next;
}

Flow Evaluator::execute(const Statement& statement) {
  budget.step();
  if (stack.isExhausted())
    throw errors::stackOverflow();
  const SourceRange* const outer = std::exchange(place, &statement.range);
  const Flow flow = dispatch(*this, statement);
  place = outer;
  return flow;
}

} // namespace tabwright::applescript
