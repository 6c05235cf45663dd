// Statements that steer: each tells its block's runner whether to go on, to leave the loop, or to leave the handler.
// What a block changes for its inside (the target, the timeout, what text comparison considers) is put back however it
// ends.
#include "applescript/evaluate/Evaluator.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"

#include <fmt/core.h>

#include <algorithm>
#include <limits>
#include <new>

namespace tabwright::applescript {

Evaluator::Flow Evaluator::execute(const Block& block) {
  for (const auto& statement : block) {
    if (const Flow flow = execute(*statement); flow != Flow::next)
      return flow;
  }
  return Flow::next;
}

Evaluator::Flow Evaluator::execute(const Statement& statement) {
  budget_.step();
  if (stack_.isExhausted())
    throw errors::stackOverflow();
  const SourceRange* const outer = std::exchange(place_, &statement.range);
  const Flow flow = dispatch(statement);
  place_ = outer;
  return flow;
}

Evaluator::Flow Evaluator::dispatch(const Statement& statement) {
  using Kind = Statement::Kind;
  switch (statement.kind) {
  case Kind::expression:
    frame_->setResult(evaluateOptional(*static_cast<const ExpressionStatement&>(statement).expression));
    return Flow::next;
  case Kind::set:
    assign(static_cast<const Assignment&>(statement));
    return Flow::next;
  case Kind::ifElse:
    return executeIf(static_cast<const If&>(statement));
  case Kind::repeat:
    return executeRepeat(static_cast<const Repeat&>(statement));
  case Kind::exitRepeat:
    return Flow::exitRepeat;
  case Kind::continueHandler:
    frame_->setResult(continueCall(static_cast<const ContinueStatement&>(statement)));
    return Flow::next;
  case Kind::tell:
    return executeTell(static_cast<const Tell&>(statement));
  case Kind::tryBlock:
    return executeTry(static_cast<const Try&>(statement));
  case Kind::returning: {
    const auto& value = static_cast<const Return&>(statement).value;
    frame_->returned = value ? evaluateOptional(*value) : Value::nothing();
    return Flow::returned;
  }
  case Kind::error:
    raise(static_cast<const RaiseError&>(statement));
  case Kind::considering:
    return executeConsidering(static_cast<const Considering&>(statement));
  case Kind::timeout:
    return executeTimeout(static_cast<const Timeout&>(statement));
  case Kind::transaction:
    return execute(static_cast<const Transaction&>(statement).body);
  case Kind::usingTerms:
    return execute(static_cast<const UsingTerms&>(statement).body);
  case Kind::script: {
    const auto& definition = static_cast<const ScriptDefinition&>(statement);
    Value script = instantiate(*definition.layout, frame_->owner);
    if (definition.binding)
      assignToVariable(*definition.binding, Value(script));
    frame_->setResult(std::move(script));
    return Flow::next;
  }
  case Kind::declare:
  case Kind::property:
  case Kind::handler:
  case Kind::use:
    return Flow::next;
  }
  return Flow::next;
}

bool Evaluator::condition(const Expression& expression) {
  const Value value = evaluate(expression);
  if (const auto* boolean = value.get<bool>())
    return *boolean;
  return booleanOf(plain(value));
}

Evaluator::Flow Evaluator::executeIf(const If& statement) {
  for (const auto& branch : statement.branches) {
    if (condition(*branch.condition))
      return execute(branch.body);
  }
  return statement.otherwise ? execute(*statement.otherwise) : Flow::next;
}

Evaluator::Flow Evaluator::executeTell(const Tell& statement) {
  const Restored<Value> target(frame_->target, lookThrough(evaluate(*statement.target, Mode::designation)));
  return execute(statement.body);
}

Evaluator::Flow Evaluator::executeTry(const Try& statement) {
  std::optional<ScriptError> caught;
  try {
    return executeTried(statement);
  } catch (ScriptError& error) {
    caught = std::move(error);
  } catch (const std::bad_alloc&) {
    caught = errors::outOfMemory();
  }
  caught->at(*place_);
  place_ = &statement.range;
  // A run that is being ended can't be kept alive by a handler of its own.
  if (budget_.isSpent())
    throw *caught;
  if (!statement.hasHandler)
    return Flow::next;
  if (statement.onlyNumber && integerOf(operand(*statement.onlyNumber)) != caught->number())
    throw *caught;
  const auto valueOr = [](const std::shared_ptr<const Value>& value, const Value& otherwise) {
    return value ? *value : otherwise;
  };
  if (statement.message)
    assignToVariable(*statement.message, caught->message());
  if (statement.number)
    assignToVariable(*statement.number, caught->number());
  if (statement.from)
    assignToVariable(*statement.from, valueOr(caught->offendingObject, {}));
  if (statement.partialResult)
    assignToVariable(*statement.partialResult, valueOr(caught->partialResult, Value::list({})));
  if (statement.to)
    assignToVariable(*statement.to, valueOr(caught->expectedType, {}));
  return execute(statement.handler);
}

void Evaluator::raise(const RaiseError& statement) {
  constexpr std::int64_t lowest = std::numeric_limits<int>::min();
  constexpr std::int64_t highest = std::numeric_limits<int>::max();
  std::string message;
  int number = errorNumber::userError;
  if (statement.message)
    message = textOf(operand(*statement.message), coercionContext());
  if (statement.number)
    number = static_cast<int>(std::clamp(integerOf(operand(*statement.number)), lowest, highest));
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
    return expression ? std::make_shared<const Value>(evaluate(*expression)) : nullptr;
  };
  error.offendingObject = valueOf(statement.from);
  error.partialResult = valueOf(statement.partialResult);
  error.expectedType = valueOf(statement.to);
  throw error;
}

Evaluator::Flow Evaluator::executeConsidering(const Considering& statement) {
  TextAttributes attributes = attributes_;
  const auto change = [&](const std::vector<Considering::Attribute>& changed, bool considers) {
    using Attribute = Considering::Attribute;
    for (const Attribute attribute : changed) {
      switch (attribute) {
      case Attribute::textCase:
        attributes.considersCase = considers;
        break;
      case Attribute::diacriticals:
        attributes.considersDiacriticals = considers;
        break;
      case Attribute::hyphens:
        attributes.considersHyphens = considers;
        break;
      case Attribute::punctuation:
        attributes.considersPunctuation = considers;
        break;
      case Attribute::whiteSpace:
        attributes.considersWhiteSpace = considers;
        break;
      case Attribute::numericStrings:
        attributes.considersNumericStrings = considers;
        break;
      case Attribute::expansion:            // No folding here makes one character of two.
      case Attribute::applicationResponses: // An answer is always waited for.
        break;
      }
    }
  };
  change(statement.considered, true);
  change(statement.ignored, false);
  const Restored<TextAttributes> current(attributes_, attributes);
  return execute(statement.body);
}

Evaluator::Flow Evaluator::executeTimeout(const Timeout& statement) {
  constexpr double longest = 1e9;
  const double seconds = realOf(operand(*statement.seconds));
  const auto timeout = std::chrono::duration_cast<std::chrono::nanoseconds>(
      std::chrono::duration<double>(seconds > 0 ? std::min(seconds, longest) : 0));
  const Restored<std::chrono::nanoseconds> current(sender_.timeout, timeout);
  return execute(statement.body);
}

} // namespace tabwright::applescript
