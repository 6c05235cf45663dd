#pragma once

#include "intents/EnumDeclaration.h"

#include <string>

namespace tabwright::intents {

struct EntityDeclaration;

enum class ValueKind { nothing, text, boolean, integer, enumeration, entity, file };

/// The type of a parameter, an entity's property or an action's result, for those who must know it without C++: the
/// readers of parameters, the JSON schema and the help are derived from it.
struct ValueType {
  ValueKind kind = ValueKind::nothing;
  const EnumDeclaration* enumeration = nullptr; ///< of kind `enumeration`; static storage
  const EntityDeclaration* entity = nullptr;    ///< of kind `entity`; static storage
  bool isList = false;
  bool isOptional = false;

  /// As help shows it: "text", "boolean", "TabSelectionOption", "list of BrowserTabEntity".
  [[nodiscard]] std::string name() const;
};

} // namespace tabwright::intents
