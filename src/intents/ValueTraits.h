#pragma once

#include "intents/EnumDeclaration.h"
#include "intents/IntentFile.h"
#include "intents/ValueError.h"
#include "intents/ValueType.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tabwright::intents {

template <class Entity>
class EntityDefinition;

/// Makes a C++ type a value of parameters, properties and results: all conversions between C++, JSON and command lines
/// are here, and a type that has none of these doesn't compile as a parameter. Each specialisation has
///
///     static ValueType type();
///     static boost::json::value toJson(const T& value);
///     static T fromJson(const boost::json::value& json);   // strict about JSON types
///     static T fromText(std::string_view text);            // as a person writes it on a command line
///
/// where the two readers throw `ValueError`, without the name of the parameter. Null is never a value: `toJson` gives
/// it for no value only, and the callers of `fromJson` take it as none before they call.
template <class T>
struct ValueTraits;

/// The result of an action that has none. Null in JSON.
using Nothing = std::monostate;

template <>
struct ValueTraits<Nothing> {
  static ValueType type() { return {}; }
  static boost::json::value toJson(Nothing) { return nullptr; }
};

/// Text stands as it is: nothing is trimmed, nothing unescaped.
template <>
struct ValueTraits<std::string> {
  static ValueType type() { return {.kind = ValueKind::text}; }
  static boost::json::value toJson(const std::string& value) { return boost::json::value(value); }
  static std::string fromJson(const boost::json::value& json);
  static std::string fromText(std::string_view text) { return std::string(text); }
};

/// As text: true, yes, 1 and false, no, 0, ignoring case.
template <>
struct ValueTraits<bool> {
  static ValueType type() { return {.kind = ValueKind::boolean}; }
  static boost::json::value toJson(bool value) { return boost::json::value(value); }
  static bool fromJson(const boost::json::value& json);
  static bool fromText(std::string_view text);
};

/// Whole numbers of 64 bits. A JSON number with a fraction of zero counts as whole; a text is decimal digits, perhaps
/// behind a minus, and nothing around them.
template <>
struct ValueTraits<std::int64_t> {
  static ValueType type() { return {.kind = ValueKind::integer}; }
  static boost::json::value toJson(std::int64_t value) { return boost::json::value(value); }
  static std::int64_t fromJson(const boost::json::value& json);
  static std::int64_t fromText(std::string_view text);
};

/// A file. A result holds it as the object `{"filename": ..., "type": ..., "data": ...}`, its data in base 64. What is
/// given for a parameter is the content itself: a text, or any object or list, which becomes a file of JSON; whatever
/// keys it has, it never names a file of the machine.
template <>
struct ValueTraits<IntentFile> {
  static ValueType type() { return {.kind = ValueKind::file}; }
  static boost::json::value toJson(const IntentFile& value);
  static IntentFile fromJson(const boost::json::value& json);
  static IntentFile fromText(std::string_view text);
};

namespace detail {
/// Index of the case of that name or raw value; throws `ValueError`.
[[nodiscard]] std::size_t indexOfCase(const EnumDeclaration& declaration, std::string_view nameOrRawValue);
[[nodiscard]] std::size_t indexOfCase(const EnumDeclaration& declaration, const boost::json::value& json);
/// The JSON value that a text holds, or a `ValueError` that says so. A blank text has a complaint of its own: it mostly
/// comes through a pipe from a command that failed.
[[nodiscard]] boost::json::value parseValue(std::string_view text, std::string_view expected);
/// `json`, or its only item when it is a list of one: an action that lists things may feed one that takes one.
[[nodiscard]] const boost::json::value& soleValue(const boost::json::value& json, std::string_view expected);
const boost::json::value& soleValue(boost::json::value&& json, std::string_view expected) = delete; // it would dangle
} // namespace detail

/// Throws a `ValueError` that names the first key which is no property, and what the properties are. Entities are given
/// by people and agents, whose misspelt keys must not be lost.
void refuseUnknownProperties(const EntityDeclaration& declaration, const boost::json::object& object);

/// A property of an entity that an action gave, from its JSON. It differs from a parameter's value for files alone.
template <class T>
[[nodiscard]] T propertyFromJson(const boost::json::value& json) {
  return ValueTraits<T>::fromJson(json);
}
/// Has no bytes where the object tells the `path` that the file was saved to in place of `data`.
template <>
std::optional<IntentFile> propertyFromJson(const boost::json::value& json);

/// Enums go by the names of their cases; a raw value is taken too, and a JSON number where the cases are seconds.
template <DeclaredEnum Enum>
struct ValueTraits<Enum> {
  static const EnumDeclaration& declaration() {
    static const EnumDeclaration declaration = enumDeclaration(Enum{});
    return declaration;
  }
  static ValueType type() { return {.kind = ValueKind::enumeration, .enumeration = &declaration()}; }
  static boost::json::value toJson(Enum value) { return boost::json::value(enumCase(value).name); }
  static Enum fromJson(const boost::json::value& json) {
    return static_cast<Enum>(detail::indexOfCase(declaration(), json));
  }
  static Enum fromText(std::string_view text) { return static_cast<Enum>(detail::indexOfCase(declaration(), text)); }
};

/// A type with a static `definition()`, which is what makes it an entity.
template <class Type>
concept DefinedEntity = requires {
  { Type::definition() } -> std::convertible_to<const EntityDefinition<Type>&>;
};

/// An entity that a short text refers to, beside its object, such as "chromium:8": `fromReference` gives nothing for a
/// text that is none, and doesn't look whether there is such a thing.
template <class Type>
concept ReferredEntity = DefinedEntity<Type> && requires(std::string_view text) {
  { Type::fromReference(text) } -> std::convertible_to<std::optional<Type>>;
};

/// Entities are JSON objects, on a command line as text. A list of one is taken for its item, and a reference for its
/// entity where the type has such. Include `EntityDefinition.h` where these are used.
template <DefinedEntity Entity>
struct ValueTraits<Entity> {
  static ValueType type() { return {.kind = ValueKind::entity, .entity = &Entity::definition().declaration()}; }
  static boost::json::value toJson(const Entity& value) { return Entity::definition().toJson(value); }
  static Entity fromJson(const boost::json::value& json) {
    const boost::json::value& value = detail::soleValue(json, expected());
    if constexpr (ReferredEntity<Entity>) {
      if (const boost::json::string* text = value.if_string())
        return fromText(std::string_view(*text));
    }
    if (!value.is_object())
      throw ValueError::unsuitable(value, expected());
    return Entity::definition().fromJson(value);
  }
  static Entity fromText(std::string_view text) {
    if constexpr (ReferredEntity<Entity>) {
      if (auto entity = Entity::fromReference(text))
        return std::move(*entity);
    }
    const boost::json::value json = detail::parseValue(text, expected());
    if (json.is_string())
      throw ValueError::unsuitable(json, expected());
    return fromJson(json);
  }

private:
  static std::string expected() {
    return "one JSON object of the type " + type().name() +
           (ReferredEntity<Entity> ? ", or its reference, such as chromium:8" : "");
  }
};

template <class T>
struct ValueTraits<std::optional<T>> {
  static ValueType type() {
    ValueType type = ValueTraits<T>::type();
    type.isOptional = true;
    return type;
  }
  static boost::json::value toJson(const std::optional<T>& value) {
    return value ? ValueTraits<T>::toJson(*value) : boost::json::value(nullptr);
  }
  static std::optional<T> fromJson(const boost::json::value& json) { return ValueTraits<T>::fromJson(json); }
};

template <class T>
struct ValueTraits<std::vector<T>> {
  static ValueType type() {
    ValueType type = ValueTraits<T>::type();
    type.isList = true;
    return type;
  }
  static boost::json::value toJson(const std::vector<T>& values) {
    boost::json::array list;
    list.reserve(values.size());
    for (const T& value : values)
      list.push_back(ValueTraits<T>::toJson(value));
    return list;
  }
  static std::vector<T> fromJson(const boost::json::value& json) {
    const boost::json::array* list = json.if_array();
    if (!list)
      throw ValueError::unsuitable(json, "a " + type().name());
    std::vector<T> values;
    values.reserve(list->size());
    for (const boost::json::value& item : *list) {
      try {
        values.push_back(ValueTraits<T>::fromJson(item));
      } catch (const ValueError& error) {
        throw error.within("item " + std::to_string(values.size() + 1));
      }
    }
    return values;
  }
};

} // namespace tabwright::intents
