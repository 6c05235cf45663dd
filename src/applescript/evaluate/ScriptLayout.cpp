// A layout is filled in two steps: `collect` takes names and handlers from the text, so that all of them are known
// before any use is placed, and the resolver adds the variables of the run handler and the globals that handlers
// declare as it meets them. Names are kept folded; the spelling first seen is kept for those who show it.
#include "applescript/evaluate/ScriptLayout.h"

#include "applescript/terminology/Codes.h"
#include "applescript/values/Names.h"

namespace tabwright::applescript {

std::optional<int> ScriptLayout::findVariable(std::string_view variable) const {
  const auto found = indexByName.find(foldedName(variable));
  return found == indexByName.end() ? std::nullopt : std::optional(found->second);
}

const HandlerDefinition* ScriptLayout::findHandler(const std::string& folded) const {
  const auto found = handlers.find(folded);
  return found == handlers.end() ? nullptr : found->second;
}

ScriptLayout& ScriptLayout::outermost() {
  return enclosing ? enclosing->outermost() : *this;
}

bool ScriptLayout::isRunStatement(const Statement& statement) {
  return !as<PropertyDefinition>(statement) && !as<ScriptDefinition>(statement) && !as<HandlerDefinition>(statement) &&
         !as<Use>(statement);
}

int ScriptLayout::declare(const Label& label, bool isSeenByHandlers) {
  const auto [place, isNew] = indexByName.try_emplace(foldedName(label.name), static_cast<int>(variables.size()));
  if (isNew)
    variables.push_back({label, isSeenByHandlers});
  else if (isSeenByHandlers)
    variables[static_cast<std::size_t>(place->second)].isSeenByHandlers = true;
  return place->second;
}

void ScriptLayout::declareGlobal(const std::string& name) {
  // Declared in the outermost script it is seen by the handlers of that one, declared further in by those of the script
  // that declares it.
  outermost().declare({0, name}, !enclosing);
  if (enclosing)
    globals.insert(foldedName(name));
}

void ScriptLayout::collect(const Block& body) {
  for (const auto& statement : body) {
    if (const auto* property = as<PropertyDefinition>(*statement)) {
      const int index = declare(property->name, true);
      if (property->name.code == codes::parent || sameName(property->name.name, "parent"))
        parentIndex = index;
    } else if (const auto* script = as<ScriptDefinition>(*statement); script && !script->name.empty()) {
      declare({0, script->name}, true);
    } else if (const auto* use = as<Use>(*statement); use && use->value) {
      declare({0, use->alias}, true);
    } else if (const auto* definition = as<HandlerDefinition>(*statement)) {
      handlers.insert_or_assign(foldedName(definition->name), definition);
    } else if (const auto* declaration = as<Declare>(*statement);
               declaration && declaration->scope == Declare::Scope::global) {
      for (const auto& variable : declaration->variables)
        declareGlobal(variable->name);
    }
    if (isRunStatement(*statement))
      implicitRun.push_back(statement.get());
  }
}

} // namespace tabwright::applescript
