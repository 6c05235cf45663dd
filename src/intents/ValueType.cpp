#include "intents/ValueType.h"

#include "intents/EntityDeclaration.h"

namespace tabwright::intents {

std::string ValueType::name() const {
  const std::string item = [&]() -> std::string {
    switch (kind) {
    case ValueKind::nothing:
      return "nothing";
    case ValueKind::text:
      return "text";
    case ValueKind::boolean:
      return "boolean";
    case ValueKind::integer:
      return "integer";
    case ValueKind::enumeration:
      return std::string(enumeration->name);
    case ValueKind::entity:
      return std::string(entity->name);
    case ValueKind::file:
      return "file";
    }
    return {};
  }();
  return isList ? "list of " + item : item;
}

} // namespace tabwright::intents
