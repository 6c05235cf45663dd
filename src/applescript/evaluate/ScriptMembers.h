#pragma once

#include "applescript/syntax/Tree.h"
#include "applescript/values/ScriptObject.h"

#include <memory>
#include <string>

namespace tabwright::applescript {

/// A handler, and the script object in whose text it stands. Both null when there is none.
struct FoundHandler {
  const HandlerDefinition* definition = nullptr;
  std::shared_ptr<ScriptObject> owner;
};

/// The handler that a message of that name reaches: the script object's own, or one of its parents', nearest first.
/// Names are folded (`foldedName`).
[[nodiscard]] FoundHandler findHandler(const std::shared_ptr<ScriptObject>& script, const std::string& foldedName);
/// The handler that a message without a receiver reaches from a script object: one there, or in a script around it,
/// each with its parents.
[[nodiscard]] FoundHandler findHandlerAround(std::shared_ptr<ScriptObject> script, const std::string& foldedName);

/// A property or global of the script object or of its parents; null when there is none. `nothing` stands in one that
/// isn't defined yet. Valid as long as the script object that has it lives.
[[nodiscard]] Value* findProperty(ScriptObject& script, const Label& label);

} // namespace tabwright::applescript
