#pragma once

#include "applescript/syntax/Tree.h"
#include "applescript/values/ScriptObject.h"
#include "applescript/values/Value.h"

#include <memory>
#include <vector>

namespace tabwright::applescript {

/// One call of a handler: its variables, whose handler it is, and whom it talks to. The implicit run handler has no
/// slots: its variables are those of its script.
struct Frame {
  /// By Variable::slot. A variable that references name has a VariableReference here, and its value in there.
  std::vector<Value> slots; ///< `nothing` where not defined
  /// `me`: the script object that was sent the message. The child's, when a parent's handler runs for it.
  std::shared_ptr<ScriptObject> self;
  /// The script object in whose text the handler stands: where its variables outside of the frame are.
  std::shared_ptr<ScriptObject> owner;
  const HandlerDefinition* handler = nullptr; ///< null in the implicit run handler

  /// `it`: the target of the innermost `tell`, or the object under test of a `whose`; `nothing` outside of both.
  Value target = Value::nothing();

  /// The value of the `return` that ended the call; `nothing` for one without a value.
  Value returned = Value::nothing();

  /// The place of a variable's value; `nothing` stands there while it isn't defined. −2753 for `result`, which has no
  /// place.
  Value& variable(const Variable& name) {
    return name.place == Variable::Place::frame ? slots[static_cast<std::size_t>(name.slot)] : outerVariable(name);
  }
  /// The value of a variable, or else of the field of that name in a record under test. −2753 when there is neither.
  Value read(const Variable& name);
  /// The script object among whose variables a Place::script variable is: `owner`, or one around it.
  [[nodiscard]] const std::shared_ptr<ScriptObject>& scriptOf(const Variable& name) const;

  /// `result`: the value that the last statement left, or the variable that it set, whose value isn't held twice. A
  /// value held here, too, could not grow in place.
  void setResult(Value&& value) {
    result_ = std::move(value);
    resultVariable_ = nullptr;
  }
  void setResult(const Variable& name) {
    result_ = Value::nothing();
    resultVariable_ = &name;
  }
  Value result() { return resultVariable_ ? variable(*resultVariable_) : result_; }
  /// The target of a message without one: `it`, or `me` outside of any `tell`.
  [[nodiscard]] Value implicitTarget() const { return target.isNothing() ? Value(self) : target; }

private:
  Value& outerVariable(const Variable& name);

  Value result_ = Value::nothing();
  const Variable* resultVariable_ = nullptr;
};

} // namespace tabwright::applescript
