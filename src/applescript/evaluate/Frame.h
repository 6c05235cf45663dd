#pragma once

#include "applescript/syntax/Tree.h"
#include "applescript/values/ScriptObject.h"
#include "applescript/values/Value.h"

#include <memory>
#include <vector>

namespace tabwright::applescript {

/// One call of a handler: its variables, whose handler it is, and whom it talks to.
struct Frame {
  std::vector<Value> slots; ///< `nothing` where not defined
  /// `me`: the script object that was sent the message. The child's, when a parent's handler runs for it.
  std::shared_ptr<ScriptObject> self;
  /// The script object in whose text the handler stands: where its variables outside of the frame are.
  std::shared_ptr<ScriptObject> owner;
  const HandlerDefinition* handler = nullptr; ///< null in the implicit run handler

  /// `it`: the target of the innermost `tell`, or the object under test of a `whose`; `nothing` outside of both.
  Value target = Value::nothing();

  /// What `result` stands for: the value, unless the last statement set a variable, whose value isn't held twice.
  Value result = Value::nothing();
  const Variable* resultVariable = nullptr;

  Value returned = Value::nothing();
};

} // namespace tabwright::applescript
