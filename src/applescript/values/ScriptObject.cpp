#include "applescript/values/ScriptObject.h"

#include "applescript/evaluate/ScriptLayout.h"

#include <fmt/core.h>

namespace tabwright::applescript {

ScriptObject::ScriptObject(const ScriptLayout& layout, std::shared_ptr<ScriptObject> enclosing)
    : variables(layout.variables.size(), Value::nothing()), layout_(layout), enclosing_(std::move(enclosing)) {}

ScriptObject* ScriptObject::parentScript() const {
  const auto* script = parent.get<Value::ScriptPointer>();
  return script ? script->get() : nullptr;
}

std::string ScriptObject::description() const {
  return layout_.name.empty() ? "«script»" : fmt::format("«script {}»", layout_.name);
}

void ScriptObject::clear() {
  for (Value& variable : variables)
    release(std::exchange(variable, Value::nothing()));
  release(std::exchange(parent, Value::nothing()));
}

} // namespace tabwright::applescript
