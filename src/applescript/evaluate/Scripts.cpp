// Script objects come to be when their text is reached: properties are evaluated in the order written, each seeing
// those before it, and in a handler also the handler's variables.
#include "applescript/evaluate/Evaluator.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"

namespace tabwright::applescript {

std::shared_ptr<ScriptObject> Evaluator::instantiate(const ScriptLayout& layout,
                                                     std::shared_ptr<ScriptObject> enclosing) {
  const auto script = script_.instantiate(layout, std::move(enclosing));
  initialize(script);
  return script;
}

void Evaluator::initialize(const std::shared_ptr<ScriptObject>& script) {
  if (stack_.isExhausted())
    throw errors::stackOverflow();
  const Restored<std::shared_ptr<ScriptObject>> self(frame_->self, script);
  const Restored<std::shared_ptr<ScriptObject>> owner(frame_->owner, script);
  const Restored<Value> target(frame_->target, Value::nothing());
  const ScriptLayout& layout = script->layout();
  for (const auto& initializer : layout.initializers) {
    Value value =
        initializer.script ? Value(instantiate(*initializer.script->layout, script)) : evaluate(*initializer.value);
    if (initializer.index == layout.parentIndex)
      script->parent = lookThrough(value);
    script->variables[static_cast<std::size_t>(initializer.index)] = std::move(value);
  }
}

} // namespace tabwright::applescript
