#include "applescript/values/ScriptObject.h"

#include <fmt/core.h>

namespace tabwright::applescript {

ScriptObject::ScriptObject(const ScriptLayout& layout, std::string name, std::size_t variables,
                           std::shared_ptr<ScriptObject> enclosing)
    : variables(variables, Value::nothing()), layout_(layout), name_(std::move(name)),
      enclosing_(std::move(enclosing)) {}

ScriptObject* ScriptObject::parentScript() const {
  const auto* script = parent.get<Value::ScriptPointer>();
  return script ? script->get() : nullptr;
}

std::string ScriptObject::description() const {
  return name_.empty() ? "«script»" : fmt::format("«script {}»", name_);
}

void ScriptObject::clear() {
  for (Value& variable : variables)
    release(std::exchange(variable, Value::nothing()));
  release(std::exchange(parent, Value::nothing()));
}

} // namespace tabwright::applescript
