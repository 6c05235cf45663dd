// One walk over the declared types makes both schemas. They differ in few places: a value that is given may leave out
// what a result always has, and may be a short text that names it; a file comes out as an object and is given as its
// bare content. Keys stand in the order in which they are declared, which is the order that people read.
#include "host/JsonSchema.h"

#include "host/ActionWords.h"
#include "intents/EntityDeclaration.h"

#include <boost/json/array.hpp>

#include <utility>

namespace tabwright::host {

namespace {

using boost::json::array;
using boost::json::object;
using intents::ParameterBase;
using intents::ParameterDeclaration;
using intents::ValueKind;
using intents::ValueType;

// A value that goes in may leave out what one that comes out always has, and may be a text that names it.
enum class Direction { in, out };

object schemaOf(const ValueType& type, Direction direction);

object schemaOfEnum(const intents::EnumDeclaration& declaration) {
  array names;
  for (const intents::EnumCase& enumCase : declaration.cases)
    names.emplace_back(enumCase.name);
  return {{"type", "string"}, {"enum", std::move(names)}};
}

object schemaOfEntity(const intents::EntityDeclaration& entity, Direction direction) {
  object properties;
  array needed;
  for (const intents::PropertyDeclaration& property : entity.properties) {
    object& schema = properties[property.name].emplace_object();
    schema["title"] = property.title.text();
    for (auto& [key, value] : schemaOf(property.type, direction))
      schema[key] = std::move(value);
    // An agent must give what a reader can't do without; a result has all but what may lack a value.
    if (direction == Direction::in ? property.presence == intents::PropertyPresence::needed : !property.type.isOptional)
      needed.emplace_back(property.name);
  }
  object schema{{"type", "object"},
                {"properties", std::move(properties)},
                {"required", std::move(needed)},
                {"additionalProperties", false}};
  // Results never use the short form.
  if (direction == Direction::out || entity.textForm == intents::TextForm::none)
    return schema;
  return {{"anyOf", array{object{{"type", "string"}}, std::move(schema)}}};
}

object schemaOfItem(const ValueType& type, Direction direction) {
  switch (type.kind) {
  case ValueKind::nothing:
    return {{"type", "null"}};
  case ValueKind::text:
    return {{"type", "string"}};
  case ValueKind::boolean:
    return {{"type", "boolean"}};
  case ValueKind::integer:
    return {{"type", "integer"}};
  case ValueKind::enumeration:
    return schemaOfEnum(*type.enumeration);
  case ValueKind::entity:
    return schemaOfEntity(*type.entity, direction);
  case ValueKind::file:
    if (direction == Direction::out)
      return {{"type", "object"},
              {"properties",
               {{"filename", {{"type", "string"}}},
                {"type", {{"type", "string"}}},
                {"data", {{"type", "string"}, {"contentEncoding", "base64"}}}}},
              {"required", array{"filename", "type", "data"}}};
    // The content itself: any object or list becomes a file of JSON.
    return {{"type", array{"object", "array", "string"}}};
  }
  return {};
}

object schemaOf(const ValueType& type, Direction direction) {
  if (type.isList)
    return {{"type", "array"}, {"items", schemaOfItem(type, direction)}};
  return schemaOfItem(type, direction);
}

std::string descriptionOf(const ParameterDeclaration& declaration) {
  std::string description = declaration.description.text();
  if (declaration.type.kind != ValueKind::enumeration)
    return description;
  // The keyword “enum” has no place for captions.
  const char* before = " (";
  for (const OfferedValue& offer : offersOf(declaration))
    description += std::exchange(before, "; ") + offer.text + ": " + offer.caption;
  return description + ")";
}

object schemaOfParameter(const ParameterDeclaration& declaration) {
  object schema{{"title", declaration.title.text()}, {"description", descriptionOf(declaration)}};
  // Behind title and description, which people read first.
  for (auto& [key, value] : schemaOf(declaration.type, Direction::in))
    schema[key] = std::move(value);
  if (declaration.options) {
    array& examples = schema["examples"].emplace_array();
    for (const OfferedValue& offer : offersOf(declaration))
      examples.emplace_back(offer.text);
  }
  if (declaration.defaultValue)
    schema["default"] = *declaration.defaultValue;
  else if (const auto offered = declaration.options ? declaration.options->defaultResult() : std::nullopt)
    schema["default"] = offered->text;
  return schema;
}

} // namespace

object inputSchema(const intents::Intent& action) {
  object properties;
  array required;
  for (const ParameterBase* parameter : action.parameters()) {
    properties[parameter->name()] = schemaOfParameter(parameter->declaration());
    if (action.isAlwaysNeeded(*parameter))
      required.emplace_back(parameter->name());
  }
  object schema{{"type", "object"}, {"properties", std::move(properties)}};
  if (!required.empty())
    schema["required"] = std::move(required);
  schema["additionalProperties"] = false;
  return schema;
}

object outputSchema(const intents::Intent& action) {
  const ValueType type = action.resultType();
  object schema = schemaOf(type, Direction::out);
  if (!type.isOptional)
    return schema;
  return {{"anyOf", array{std::move(schema), object{{"type", "null"}}}}};
}

} // namespace tabwright::host
