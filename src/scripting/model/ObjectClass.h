#pragma once

#include "applescript/terminology/FourCharCode.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

namespace tabwright::scripting {

class EventScope;
struct ObjectClass;

/// One object of an application, valid for one event: its class, and two numbers with which the application finds it
/// again (such as the positions of a window and of a tab in the snapshot that answers the event). Two are the same
/// object when all three are equal.
struct Object {
  const ObjectClass* type = nullptr;
  std::int64_t first = 0;
  std::int64_t second = 0;

  friend bool operator==(const Object&, const Object&) = default;
};

/// The result of a specifier, or of one step of it: a plain value, an object, or several of either (a step taken from
/// several objects gives a list of its results from each).
struct Found {
  std::variant<applescript::Value, Object, std::vector<Found>> what;

  /// Implicit, so that the functions of rows return any of the three.
  Found(applescript::Value value) : what(std::move(value)) {}
  Found(Object object) : what(object) {}
  Found(std::vector<Found> list) : what(std::move(list)) {}
};

/// A property of a class. Functions throw ScriptError; the model turns what they throw into the event's error. `get` is
/// never null.
struct PropertyRow {
  applescript::FourCharCode code = 0;
  Found (*get)(EventScope& scope, Object object) = nullptr;
  /// Null for a property that can't be set. The value is no specifier, except one that names a single object.
  void (*set)(EventScope& scope, Object object, const applescript::Value& value) = nullptr;
  bool isInProperties = true; ///< `properties` has it too
};

/// One kind of elements that the objects of a class contain, in their order. `count` and `at` are never null, and must
/// agree for as long as the event: the model asks for the positions below the count.
struct ElementRow {
  const ObjectClass* type = nullptr;
  std::size_t (*count)(EventScope& scope, Object container) = nullptr;
  /// The element at a 0-based position below `count`.
  Object (*at)(EventScope& scope, Object container, std::size_t position) = nullptr;
  /// The element with an id or a name; nothing when there is none. Null: all elements are searched, by the properties
  /// `id` and `name`, ids alike when their text forms are, names ignoring case.
  std::optional<Object> (*byID)(EventScope& scope, Object container, const applescript::Value& id) = nullptr;
  std::optional<Object> (*byName)(EventScope& scope, Object container, std::string_view name) = nullptr;
};

/// A class of an application's dictionary, described by tables with static storage. The rows give what the application
/// can do; the properties `class`, `contents` and `properties` come by themselves.
///
///     constexpr PropertyRow tabProperties[]{{nameCode, get<tabTitle>}, {urlCode, get<tabURL>, put<setTabURL>}};
///     constexpr ObjectClass tabClass{tabCode, "tab", tabProperties, {}, tabSpecifier};
struct ObjectClass {
  applescript::FourCharCode code = 0;
  std::string_view words; ///< in the singular, as `class of` answers
  std::span<const PropertyRow> properties;
  std::span<const ElementRow> elements;
  /// The object's one lasting specifier, by which answers name it. Null for the application itself, which its scope
  /// names.
  applescript::SpecifierPointer (*specifier)(EventScope& scope, Object object) = nullptr;
};

} // namespace tabwright::scripting
