// Calls of the script's own handlers. A message goes to a script object; its handler is found there or along its
// parents. The frame of the call knows both: `self`, who was sent the message, and `owner`, in whose text the handler
// stands.
#include "applescript/evaluate/Bridge.h"
#include "applescript/evaluate/Calls.h"
#include "applescript/evaluate/Statements.h"
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

namespace {

template <class Body>
Value inFrame(Evaluator& run, Frame& frame, Body body) {
  // The guard of the stack alone would end recursion at a depth that depends on the thread.
  if (run.depth >= run.limits.handlerDepth)
    throw errors::stackOverflow();
  const Restored<Frame*> current(run.frame, &frame);
  const Restored<std::size_t> depth(run.depth, run.depth + 1);
  if (body() == Flow::returned)
    return std::move(frame.returned);
  return frame.result();
}

Arguments argumentsOf(Evaluator& run, const HandlerCall& call) {
  // The reference that a loop's variable holds is, for the handler, the value that it leads to.
  const auto argument = [&](const Expression& expression) {
    Value value = run.evaluate(expression);
    if (const auto* reference = value.get<Value::ReferencePointer>())
      return Value((*reference)->asParameter(*reference));
    requireValue(value);
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

ScriptError notUnderstood(const Value& receiver, const HandlerCall& call) {
  if (const auto* object = objectIn(receiver))
    return errors::cannotContinue(call.name).raisedBy((*object)->application->name());
  return errors::notUnderstood(shortSourceForm(receiver), call.name);
}

void bindParameters(Evaluator& run, const HandlerDefinition& definition, Arguments&& arguments, std::string_view name) {
  // Brackets are filled from the left, so only defaults behind the last parameter without one can be left out.
  std::size_t leastNeeded = 0;
  for (std::size_t index = 0; index < definition.positional.size(); ++index) {
    if (!definition.positional[index].defaultValue)
      leastNeeded = index + 1;
  }
  const std::size_t given = arguments.positional.size();
  // A call by labels alone also fits brackets of which none has to be filled.
  if (definition.isLabelled != arguments.isLabelled && (definition.isLabelled || given > 0 || leastNeeded > 0))
    throw errors::wrongParameters("The parameters don’t match", name);
  if (given > definition.positional.size() || given < leastNeeded)
    throw errors::wrongParameters(fmt::format("{} doesn’t match the {} parameters",
                                              shortSourceForm(Value::list(std::move(arguments.positional))),
                                              definition.positional.size()),
                                  name);
  // Defaults are evaluated in the frame of the call, where the parameters bound before them have their values.
  const auto bind = [&](const Parameter& parameter, Value& argument, std::string_view label) {
    if (argument.isNothing() && !parameter.defaultValue)
      throw errors::missingParameter(label, name);
    assignTo(run, *parameter.pattern,
             argument.isNothing() ? run.evaluate(*parameter.defaultValue) : std::move(argument));
  };
  arguments.positional.resize(definition.positional.size(), Value::nothing());
  for (std::size_t index = 0; index < definition.positional.size(); ++index)
    bind(definition.positional[index], arguments.positional[index], {});
  if (definition.direct)
    bind(*definition.direct, arguments.direct, "direct");
  // Goes by the handler's labels: those of the call that it doesn't have are passed over.
  for (const auto& [label, parameter] : definition.labelled) {
    const auto found =
        std::ranges::find_if(arguments.labelled, [&](const auto& argument) { return sameName(argument.first, label); });
    Value absent = Value::nothing();
    bind(parameter, found == arguments.labelled.end() ? absent : found->second, label);
  }
}

} // namespace

Value invoke(Evaluator& run, const FoundHandler& handler, std::shared_ptr<ScriptObject> self, Arguments&& arguments,
             std::string_view name) {
  Frame frame;
  frame.self = std::move(self);
  frame.owner = handler.owner;
  frame.handler = handler.definition;
  frame.slots.assign(static_cast<std::size_t>(handler.definition->frameSize), Value::nothing());
  return inFrame(run, frame, [&] {
    bindParameters(run, *handler.definition, std::move(arguments), name);
    return run.execute(handler.definition->body);
  });
}

Value runScript(Evaluator& run, const std::shared_ptr<ScriptObject>& script, std::vector<Value> arguments) {
  // A parent's run handler counts, too.
  const FoundHandler found = findHandler(script, "run");
  if (!found.definition) {
    Frame frame;
    frame.self = frame.owner = script;
    return inFrame(run, frame, [&] {
      for (const Statement* statement : script->layout().implicitRun) {
        if (const Flow flow = run.execute(*statement); flow != Flow::next)
          return flow;
      }
      return Flow::next;
    });
  }
  // `on run argv` gets all arguments as one list, `on run {a, b}` each as one, and `on run` none.
  Arguments passed;
  const HandlerDefinition& handler = *found.definition;
  if (handler.direct) {
    passed.direct = Value::list(std::move(arguments));
  } else if (handler.positional.size() == 1) {
    passed.positional.push_back(Value::list(std::move(arguments)));
  } else if (!handler.positional.empty()) {
    passed.positional = std::move(arguments);
  }
  return invoke(run, found, script, std::move(passed), "run");
}

Value callHandler(Evaluator& run, const HandlerCall& call) {
  if (call.target == HandlerCall::Target::object) {
    const Value object = lookThrough(run.evaluate(*call.object, Mode::designation));
    if (const auto* foreign = object.get<Value::ForeignPointer>()) {
      std::vector<Value> arguments = argumentsOf(run, call).positional;
      run.budget.require();
      return sendToForeign(*foreign, selectorOf(call), std::move(arguments));
    }
    const auto* script = object.get<Value::ScriptPointer>();
    const FoundHandler found = script ? findHandler(*script, call.foldedName) : FoundHandler{};
    if (!found.definition)
      throw notUnderstood(object, call);
    return invoke(run, found, *script, argumentsOf(run, call), call.name);
  }

  if (call.target == HandlerCall::Target::implicit) {
    if (const auto* script = run.frame->target.get<Value::ScriptPointer>()) {
      const std::shared_ptr<ScriptObject> target = *script;
      if (const FoundHandler found = findHandler(target, call.foldedName); found.definition)
        return invoke(run, found, target, argumentsOf(run, call), call.name);
    }
  }
  if (const FoundHandler own = findHandler(run.frame->self, call.foldedName); own.definition)
    return invoke(run, own, run.frame->self, argumentsOf(run, call), call.name);
  // The handlers of the script's surroundings run with their own script as `me`; `my f()` doesn't reach them.
  const FoundHandler found = call.target == HandlerCall::Target::implicit
                                 ? findHandlerAround(run.frame->owner, call.foldedName)
                                 : FoundHandler{};
  if (!found.definition) {
    const bool isToObject = call.target == HandlerCall::Target::implicit && objectIn(run.frame->target);
    throw notUnderstood(isToObject ? run.frame->target : Value(run.frame->self), call);
  }
  return invoke(run, found, found.owner, argumentsOf(run, call), call.name);
}

Value continueCall(Evaluator& run, const ContinueStatement& statement) {
  const auto* call = as<HandlerCall>(*statement.call);
  if (!call)
    return run.evaluateOptional(*statement.call);
  // From the script of the text and not from `me`: a parent's handler that continues would come to itself.
  const auto* parent = run.frame->owner->parent.get<Value::ScriptPointer>();
  const FoundHandler found = parent ? findHandler(*parent, call->foldedName) : FoundHandler{};
  if (!found.definition)
    throw errors::cannotContinue(call->name);
  return invoke(run, found, run.frame->self, argumentsOf(run, *call), call->name);
}

std::shared_ptr<ScriptObject> instantiate(Evaluator& run, const ScriptLayout& layout,
                                          std::shared_ptr<ScriptObject> enclosing) {
  const auto script = run.script.instantiate(layout, std::move(enclosing));
  initialize(run, script);
  return script;
}

// Properties are evaluated in the order written, each seeing those before it, and in a handler also the handler's
// variables.
void initialize(Evaluator& run, const std::shared_ptr<ScriptObject>& script) {
  if (run.stack.isExhausted())
    throw errors::stackOverflow();
  const Restored<std::shared_ptr<ScriptObject>> self(run.frame->self, script);
  const Restored<std::shared_ptr<ScriptObject>> owner(run.frame->owner, script);
  const Restored<Value> target(run.frame->target, Value::nothing());
  const ScriptLayout& layout = script->layout();
  for (const auto& initializer : layout.initializers) {
    Value value = initializer.script ? Value(instantiate(run, *initializer.script->layout, script))
                                     : run.evaluate(*initializer.value);
    // Kept apart as well, where look-ups go along the chain without a search by name.
    if (initializer.index == layout.parentIndex)
      script->parent = lookThrough(value);
    script->variables[static_cast<std::size_t>(initializer.index)] = std::move(value);
  }
}

} // namespace tabwright::applescript
