#pragma once

#include "intents/LocalizedText.h"
#include "intents/ValueType.h"

#include <boost/json/value.hpp>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::intents {

/// A needed property must stand in an entity that a user wrote by hand. One that an action made has them all.
enum class PropertyPresence { needed, mayBeLeftOut };

/// One property of an entity: a key of its JSON object. An optional type has no key there as long as there is no value.
struct PropertyDeclaration {
  /// As in JSON, in JSON schemas and in paths of workflows.
  std::string_view name;
  ValueType type;
  LocalizedText title;
  PropertyPresence presence = PropertyPresence::mayBeLeftOut;
};

/// A text that names an entity (a short name, a reference) is read as that entity, beside its object, where one may:
/// "chromium", "chromium:8".
enum class TextForm { none, names };

/// An entity without its C++ type. An entity is a value that crosses to the host as a JSON object, and
/// comes back as a parameter of a later action. Its properties keep their declared order.
struct EntityDeclaration {
  /// Static storage, as all views here: declarations live as long as the program.
  std::string_view name;
  LocalizedText typeCaption; ///< `entity.NAME.typeDisplayRepresentation`
  std::vector<PropertyDeclaration> properties;
  TextForm textForm = TextForm::none;
  std::vector<std::string_view> columns; ///< the properties that a table of such entities shows, in this order

  /// A property, a text from a page, that tells people and agents all there is; the rest is for programs. Empty for
  /// none.
  std::string_view told;

  /// One line that shows an entity to a user, or the lines of the property that tells all, from its JSON. Throws
  /// `ValueError` when it is none.
  std::function<std::string(const boost::json::value&)> displayRepresentation;

  /// The property of that name, exactly as it is spelt; null for none.
  [[nodiscard]] const PropertyDeclaration* find(std::string_view property) const {
    const auto found = std::ranges::find(properties, property, &PropertyDeclaration::name);
    return found == properties.end() ? nullptr : &*found;
  }
  /// In declared order: for complaints and help.
  [[nodiscard]] std::vector<std::string> propertyNames() const {
    std::vector<std::string> names;
    names.reserve(properties.size());
    for (const PropertyDeclaration& property : properties)
      names.emplace_back(property.name);
    return names;
  }
};

} // namespace tabwright::intents
