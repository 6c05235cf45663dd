// Look-ups along the chain of parents, which a script may close to a ring: they end after so many of them.
#include "applescript/evaluate/ScriptMembers.h"

#include "applescript/evaluate/ScriptLayout.h"

namespace tabwright::applescript {

namespace {
constexpr int mostParents = 100;
}

FoundHandler findHandler(const std::shared_ptr<ScriptObject>& script, const std::string& foldedName) {
  std::shared_ptr<ScriptObject> object = script;
  for (int hops = 0; object && hops < mostParents; ++hops) {
    if (const HandlerDefinition* definition = object->layout().findHandler(foldedName))
      return {definition, object};
    const auto* parent = object->parent.get<Value::ScriptPointer>();
    object = parent ? *parent : nullptr;
  }
  return {};
}

FoundHandler findHandlerAround(std::shared_ptr<ScriptObject> script, const std::string& foldedName) {
  for (; script; script = script->enclosing()) {
    if (FoundHandler found = findHandler(script, foldedName); found.definition)
      return found;
  }
  return {};
}

Value* findProperty(ScriptObject& script, const Label& label) {
  ScriptObject* object = &script;
  for (int hops = 0; object && hops < mostParents; ++hops) {
    if (const auto index = object->layout().findVariable(label.name)) {
      Value& variable = object->variables[static_cast<std::size_t>(*index)];
      // A name that was only declared somewhere doesn't hide what a parent has.
      if (!variable.isNothing() || !object->parentScript())
        return &variable;
    }
    object = object->parentScript();
  }
  return nullptr;
}

} // namespace tabwright::applescript
