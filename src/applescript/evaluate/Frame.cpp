#include "applescript/evaluate/Frame.h"

#include "applescript/values/Errors.h"
#include "applescript/values/Reference.h"

namespace tabwright::applescript {

const std::shared_ptr<ScriptObject>& Frame::scriptOf(const Variable& name) const {
  const std::shared_ptr<ScriptObject>* script = &owner;
  for (int depth = 0; depth < name.scriptDepth; ++depth)
    script = &(*script)->enclosing();
  return *script;
}

Value& Frame::outerVariable(const Variable& name) {
  switch (name.place) {
  case Variable::Place::cell: {
    Value& slot = slots[static_cast<std::size_t>(name.slot)];
    // Slots begin as `nothing`: the first access makes the cell.
    if (!slot.is<Value::ReferencePointer>())
      slot = Value::ReferencePointer(std::make_shared<const VariableReference>(name.name));
    return static_cast<const VariableReference&>(**slot.get<Value::ReferencePointer>()).variable();
  }
  case Variable::Place::script:
    return scriptOf(name)->variables[static_cast<std::size_t>(name.slot)];
  case Variable::Place::frame:
  case Variable::Place::result:
    break;
  }
  throw errors::undefinedVariable(name.name);
}

Value Frame::read(const Variable& name) {
  if (name.place == Variable::Place::result) {
    if (Value value = result(); !value.isNothing())
      return value;
  } else if (const Value& value = variable(name); !value.isNothing()) {
    return value;
  }
  // A record's labels are no dictionary's words: in `items of rs whose n > 1` they look like variables.
  if (const auto* record = target.get<Value::RecordPointer>()) {
    if (const Value* field = (*record)->find({0, name.name}))
      return *field;
  }
  throw errors::undefinedVariable(name.name);
}

} // namespace tabwright::applescript
