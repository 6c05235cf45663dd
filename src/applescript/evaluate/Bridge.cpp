// Messages to objects behind the Objective-C bridge. Arguments travel with references looked through and foreign
// objects as they are; failures of the bridge that aren't the language's own become its error for a failed handler.
#include "applescript/evaluate/Bridge.h"

#include "applescript/evaluate/Calls.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Names.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::applescript {

Value findInBridge(const ObjectiveCBridge* bridge, const std::string& name) {
  if (bridge) {
    if (auto found = bridge->named(name))
      return std::move(*found);
  }
  throw errors::cannotGet(fmt::format("{} of current application", name));
}

Value sendToForeign(const Value::ForeignPointer& receiver, std::string_view selector, std::vector<Value> arguments) {
  for (Value& argument : arguments)
    argument = lookThroughDeep(std::move(argument), ForeignObjects::kept);
  try {
    return receiver->send(selector, arguments);
  } catch (const ScriptError&) {
    throw;
  } catch (const platform::Failure& failure) {
    // An exception of the other side carries no number of AppleScript's.
    throw errors::of(errorNumber::handlerFailed, failure.errorDescription());
  }
}

std::string selectorOf(const HandlerCall& call) {
  std::string selector = call.name;
  if (call.arguments.empty())
    return selector;
  if (selector.ends_with('_'))
    std::ranges::replace(selector, '_', ':');
  else
    selector += ':';
  return selector;
}

Value evaluateMessage(Evaluator& run, const ObjectiveCMessage& message) {
  // Without a receiver the message is one to the script itself.
  const Value receiver =
      message.receiver ? lookThrough(run.evaluate(*message.receiver, Mode::designation)) : Value(run.frame->self);
  std::vector<Value> arguments;
  arguments.reserve(message.arguments.size());
  for (const auto& argument : message.arguments)
    arguments.push_back(run.evaluate(*argument));
  if (const auto* foreign = receiver.get<Value::ForeignPointer>()) {
    // A method can't be stopped once it has begun.
    run.budget.require();
    return sendToForeign(*foreign, message.selector, std::move(arguments));
  }
  if (const auto* script = receiver.get<Value::ScriptPointer>()) {
    // A handler written `on setValue:v forKey:k` has the selector for its name.
    if (const FoundHandler found = findHandler(*script, foldedName(message.selector)); found.definition) {
      Arguments passed;
      passed.positional = std::move(arguments);
      return invoke(run, found, *script, std::move(passed), message.selector);
    }
  }
  throw errors::notUnderstood(shortSourceForm(receiver), message.selector);
}

} // namespace tabwright::applescript
