#pragma once

#include "intents/EntityDeclaration.h"
#include "intents/ValueError.h"
#include "intents/ValueTraits.h"

#include <boost/json/object.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::intents {

/// The definition of an entity's C++ type: each property once, with its member. Declaration and JSON, both ways,
/// follow.
///
///     const EntityDefinition<Person>& Person::definition() {
///       static const EntityDefinition<Person> definition(
///           "Person", {{"name", &Person::name, PropertyPresence::needed}, {"age", &Person::age}},
///           [](const Person& person) { return person.name; });
///       return definition;
///     }
///
/// Titles are the keys `entity.ENTITY.property.PROPERTY` of the table "Intents". A member of type `std::optional` has
/// no key in the JSON as long as it has no value. Immutable once made, so any thread may use it.
template <class Entity>
class EntityDefinition {
public:
  class Property {
  public:
    /// `name` is static text. A member that is a needed property must stand in every JSON object of the entity.
    template <class Member>
    Property(std::string_view name, Member Entity::* member, PropertyPresence presence = PropertyPresence::mayBeLeftOut)
        : declaration_{name, ValueTraits<Member>::type(), {}, presence},
          write_([member](const Entity& entity) { return ValueTraits<Member>::toJson(entity.*member); }),
          read_([member](Entity& entity, const boost::json::value& json) {
            entity.*member = propertyFromJson<Member>(json);
          }) {}

  private:
    friend EntityDefinition;
    PropertyDeclaration declaration_;
    std::function<boost::json::value(const Entity&)> write_;
    std::function<void(Entity&, const boost::json::value&)> read_;
  };

  /// `displayRepresentation` gives the line that shows an entity, `columns` the properties of its tables, by name and
  /// in order, `told` the one that tells agents all. All texts that are views have static storage, and the definition
  /// itself lives in a function's `static`: types and declarations keep pointers to it.
  EntityDefinition(std::string_view name, std::vector<Property> properties,
                   std::function<std::string(const Entity&)> displayRepresentation, TextForm textForm = TextForm::none,
                   std::vector<std::string_view> columns = {}, std::string_view told = {})
      : properties_(std::move(properties)) {
    const std::string prefix = "entity." + std::string(name);
    declaration_.name = name;
    declaration_.textForm = textForm;
    declaration_.columns = std::move(columns);
    declaration_.told = told;
    declaration_.typeCaption = {prefix + ".typeDisplayRepresentation", std::string(tables::general)};
    for (const Property& property : properties_) {
      declaration_.properties.push_back(property.declaration_);
      declaration_.properties.back().title = {prefix + ".property." + std::string(property.declaration_.name),
                                              std::string(tables::general)};
    }
    declaration_.displayRepresentation = [this, display = std::move(displayRepresentation)](
                                             const boost::json::value& json) { return display(fromJson(json)); };
  }
  EntityDefinition(const EntityDefinition&) = delete;
  EntityDefinition& operator=(const EntityDefinition&) = delete;

  /// The same object at each call; types are compared by its address.
  [[nodiscard]] const EntityDeclaration& declaration() const { return declaration_; }

  /// The object of an entity, its keys in declared order, those without a value left out.
  [[nodiscard]] boost::json::object toJson(const Entity& entity) const {
    boost::json::object object;
    for (const Property& property : properties_) {
      boost::json::value value = property.write_(entity);
      if (!value.is_null())
        object.emplace(property.declaration_.name, std::move(value));
    }
    return object;
  }

  /// Throws `ValueError` for anything but an object, a property of a wrong type, a needed one that is missing, and a
  /// key that is no property, and whatever the entity's own `check()` throws where it has one. Null stands for a
  /// property that is left out.
  [[nodiscard]] Entity fromJson(const boost::json::value& json) const {
    const boost::json::object* object = json.if_object();
    if (!object)
      throw ValueError::unsuitable(json, "a JSON object of the type " + std::string(declaration_.name));
    // Before anything is read: a misspelt key would otherwise be a missing property, or none at all.
    refuseUnknownProperties(declaration_, *object);
    Entity entity;
    for (const Property& property : properties_) {
      const boost::json::value* value = object->if_contains(property.declaration_.name);
      if (!value || value->is_null()) {
        if (property.declaration_.presence == PropertyPresence::needed)
          throw ValueError("lacks the property " + std::string(property.declaration_.name) + ".");
        continue;
      }
      try {
        property.read_(entity, *value);
      } catch (const ValueError& error) {
        throw error.within(property.declaration_.name);
      }
    }
    // For rules that no single property can tell, such as two that must fit each other.
    if constexpr (requires { entity.check(); })
      entity.check();
    return entity;
  }

private:
  EntityDeclaration declaration_;
  std::vector<Property> properties_;
};

} // namespace tabwright::intents
