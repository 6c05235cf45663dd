// Calls of the script's own handlers. A message goes to a script object; its handler is found there or along its
// parents. The frame of the call knows both: `self`, who was sent the message, and `owner`, in whose text the handler
// stands.
#include "applescript/evaluate/Bridge.h"
#include "applescript/evaluate/Evaluator.h"
#include "applescript/evaluate/TestNeedsValues.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Names.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"
#include "applescript/values/ScriptableApplication.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::applescript {

template <class Body>
Value Evaluator::inFrame(Frame& frame, Body body) {
  if (depth_ >= limits_.handlerDepth)
    throw errors::stackOverflow();
  const Restored<Frame*> current(frame_, &frame);
  const Restored<std::size_t> depth(depth_, depth_ + 1);
  if (body() == Flow::returned)
    return std::move(frame.returned);
  return frame.result();
}

Value Evaluator::invoke(const FoundHandler& handler, std::shared_ptr<ScriptObject> self, Arguments&& arguments,
                        std::string_view name) {
  Frame frame;
  frame.self = std::move(self);
  frame.owner = handler.owner;
  frame.handler = handler.definition;
  frame.slots.assign(static_cast<std::size_t>(handler.definition->frameSize), Value::nothing());
  return inFrame(frame, [&] {
    bindParameters(*handler.definition, std::move(arguments), name);
    return execute(handler.definition->body);
  });
}

Value Evaluator::runScript(const std::shared_ptr<ScriptObject>& script, std::vector<Value> arguments) {
  const FoundHandler found = findHandler(script, "run");
  if (!found.definition) {
    Frame frame;
    frame.self = frame.owner = script;
    return inFrame(frame, [&] {
      for (const Statement* statement : script->layout().implicitRun) {
        if (const Flow flow = execute(*statement); flow != Flow::next)
          return flow;
      }
      return Flow::next;
    });
  }
  // `on run argv` gets all arguments as one list, `on run {a, b}` each as one, and `on run` none.
  Arguments passed;
  const HandlerDefinition& run = *found.definition;
  if (run.direct) {
    passed.direct = Value::list(std::move(arguments));
  } else if (run.positional.size() == 1) {
    passed.positional.push_back(Value::list(std::move(arguments)));
  } else if (!run.positional.empty()) {
    passed.positional = std::move(arguments);
  }
  return invoke(found, script, std::move(passed), "run");
}

Evaluator::Arguments Evaluator::argumentsOf(const HandlerCall& call) {
  // The reference that a loop's variable holds is, for the handler, the value that it leads to.
  const auto argument = [&](const Expression& expression) {
    Value value = evaluate(expression);
    if (const auto* reference = value.get<Value::ReferencePointer>())
      return Value((*reference)->asParameter(*reference));
    if (const auto* specifier = value.get<Value::SpecifierPointer>(); specifier && isRootedInTest(**specifier))
      throw TestNeedsValues();
    return value;
  };
  Arguments arguments;
  arguments.isLabelled = call.isLabelled;
  arguments.positional.reserve(call.arguments.size());
  for (const auto& expression : call.arguments)
    arguments.positional.push_back(argument(*expression));
  if (call.direct)
    arguments.direct = argument(*call.direct);
  for (const auto& [label, expression] : call.labelled)
    arguments.labelled.emplace_back(label, argument(*expression));
  return arguments;
}

Value Evaluator::callHandler(const HandlerCall& call) {
  if (call.target == HandlerCall::Target::object) {
    const Value object = lookThrough(evaluate(*call.object, Mode::designation));
    if (const auto* foreign = object.get<Value::ForeignPointer>()) {
      std::vector<Value> arguments = argumentsOf(call).positional;
      budget_.require();
      return sendToForeign(*foreign, selectorOf(call), std::move(arguments));
    }
    if (const auto* specifier = object.get<Value::SpecifierPointer>(); specifier && (*specifier)->application)
      throw errors::cannotContinue(call.name).raisedBy((*specifier)->application->name());
    const auto* script = object.get<Value::ScriptPointer>();
    const FoundHandler found = script ? findHandler(*script, call.foldedName) : FoundHandler{};
    if (!found.definition)
      throw errors::notUnderstood(shortSourceForm(object), call.name);
    return invoke(found, *script, argumentsOf(call), call.name);
  }

  if (call.target == HandlerCall::Target::implicit) {
    if (const auto* script = frame_->target.get<Value::ScriptPointer>()) {
      const std::shared_ptr<ScriptObject> target = *script;
      if (const FoundHandler found = findHandler(target, call.foldedName); found.definition)
        return invoke(found, target, argumentsOf(call), call.name);
    }
  }
  if (const FoundHandler own = findHandler(frame_->self, call.foldedName); own.definition)
    return invoke(own, frame_->self, argumentsOf(call), call.name);
  const FoundHandler found =
      call.target == HandlerCall::Target::implicit ? findHandlerAround(frame_->owner, call.foldedName) : FoundHandler{};
  if (!found.definition) {
    const auto* target = frame_->target.get<Value::SpecifierPointer>();
    if (call.target == HandlerCall::Target::implicit && target && (*target)->application)
      throw errors::cannotContinue(call.name).raisedBy((*target)->application->name());
    throw errors::notUnderstood(frame_->self->description(), call.name);
  }
  return invoke(found, found.owner, argumentsOf(call), call.name);
}

Value Evaluator::continueCall(const ContinueStatement& statement) {
  if (statement.call->kind != Expression::Kind::handlerCall)
    return evaluateOptional(*statement.call);
  const auto& call = static_cast<const HandlerCall&>(*statement.call);
  const auto* parent = frame_->owner->parent.get<Value::ScriptPointer>();
  const FoundHandler found = parent ? findHandler(*parent, call.foldedName) : FoundHandler{};
  if (!found.definition)
    throw errors::cannotContinue(call.name);
  return invoke(found, frame_->self, argumentsOf(call), call.name);
}

void Evaluator::bindParameters(const HandlerDefinition& definition, Arguments&& arguments, std::string_view name) {
  std::size_t leastNeeded = 0;
  for (std::size_t index = 0; index < definition.positional.size(); ++index) {
    if (!definition.positional[index].defaultValue)
      leastNeeded = index + 1;
  }
  const std::size_t given = arguments.positional.size();
  if (definition.isLabelled != arguments.isLabelled && (definition.isLabelled || given > 0 || leastNeeded > 0))
    throw errors::wrongParameters("The parameters don’t match", name);
  if (given > definition.positional.size() || given < leastNeeded)
    throw errors::wrongParameters(fmt::format("{} doesn’t match the {} parameters",
                                              shortSourceForm(Value::list(std::move(arguments.positional))),
                                              definition.positional.size()),
                                  name);
  for (std::size_t index = 0; index < definition.positional.size(); ++index) {
    const Parameter& parameter = definition.positional[index];
    assignTo(*parameter.pattern,
             index < given ? std::move(arguments.positional[index]) : evaluate(*parameter.defaultValue));
  }
  if (definition.direct) {
    if (arguments.direct.isNothing() && !definition.direct->defaultValue)
      throw errors::missingParameter("direct", name);
    assignTo(*definition.direct->pattern,
             arguments.direct.isNothing() ? evaluate(*definition.direct->defaultValue) : std::move(arguments.direct));
  }
  for (const auto& [label, parameter] : definition.labelled) {
    const auto found =
        std::ranges::find_if(arguments.labelled, [&](const auto& argument) { return sameName(argument.first, label); });
    if (found != arguments.labelled.end())
      assignTo(*parameter.pattern, std::move(found->second));
    else if (parameter.defaultValue)
      assignTo(*parameter.pattern, evaluate(*parameter.defaultValue));
    else
      throw errors::missingParameter(label, name);
  }
}

} // namespace tabwright::applescript
