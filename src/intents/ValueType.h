#pragma once

#include "intents/EnumDeclaration.h"

#include <string>

namespace tabwright::intents {

struct EntityDeclaration;

/// The kinds of values, whatever their C++ type. `file` is bytes with a name, `entity` an object of declared
/// properties, `nothing` the result of an action that has none.
enum class ValueKind { nothing, text, boolean, integer, enumeration, entity, file };

/// The type of a parameter, an entity's property or an action's result, for those who must know it without C++: the
/// readers of parameters, the JSON schema and the help are derived from it.
struct ValueType {
  ValueKind kind = ValueKind::nothing;
  const EnumDeclaration* enumeration = nullptr; ///< of kind `enumeration`; static storage
  const EntityDeclaration* entity = nullptr;    ///< of kind `entity`; static storage
  /// A list of such values; none of lists.
  bool isList = false;
  /// There may be no value: null in JSON, or no key in an entity's object.
  bool isOptional = false;

  /// For complaints, in English and by declared names: "text", "boolean", "TabSelectionOption", "list of
  /// BrowserTabEntity". Help has `host::captionOf`.
  [[nodiscard]] std::string name() const;
};

} // namespace tabwright::intents
