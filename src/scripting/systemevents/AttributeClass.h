#pragma once

#include "applescript/values/Errors.h"
#include "scripting/model/ObjectClass.h"
#include "scripting/systemevents/SystemEventsTerminology.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace tabwright::scripting {

/// An attribute, by the name that the Mac's accessibility interface has for it. Functions are given the owner; they
/// throw ScriptError, and platform::Failure where the desktop is asked.
struct AttributeRow {
  std::string_view name;
  Found (*get)(EventScope& scope, Object owner) = nullptr;
  void (*set)(EventScope& scope, Object owner, const applescript::Value& value) = nullptr; ///< null: can't be set
};

/// The class `attribute` of one kind of owners: `value of attribute "AXTitle" of window 1`.
///
/// `Owners` has `rows()`, all attributes that an owner may have; and `of(scope, attribute)`, the owner of an attribute.
/// In an attribute's object `first` is its owner's, and `second` its position among the rows.
///
///     struct ProcessOwners {
///       static std::span<const AttributeRow> rows() { return processAttributes; }
///       static Object of(EventScope& scope, Object attribute);
///     };
///     … ElementRow{&AttributeClass<ProcessOwners>::type, processAttributeCount, AttributeClass<ProcessOwners>::at}
template <class Owners>
struct AttributeClass {
  /// The attribute at a position; no row is looked at.
  static Object at(EventScope&, Object owner, std::size_t position) {
    return {&type, owner.first, static_cast<std::int64_t>(position)};
  }

  /// The row that an attribute's object stands for.
  static const AttributeRow& row(Object attribute) {
    return Owners::rows()[static_cast<std::size_t>(attribute.second)];
  }

  static Found name(EventScope&, Object attribute) { return applescript::Value(row(attribute).name); }
  static Found isSettable(EventScope&, Object attribute) { return applescript::Value(row(attribute).set != nullptr); }
  static Found value(EventScope& scope, Object attribute) {
    return row(attribute).get(scope, Owners::of(scope, attribute));
  }

  /// Throws −10006 for an attribute that can't be set.
  static void setValue(EventScope& scope, Object attribute, const applescript::Value& to) {
    if (!row(attribute).set)
      throw applescript::errors::cannotSet(*applescript::propertyOf(specifier(scope, attribute), systemevents::value),
                                           to, systemEventsTerminology());
    row(attribute).set(scope, Owners::of(scope, attribute), to);
  }

  /// Attributes are named by name: positions are ours alone.
  static applescript::SpecifierPointer specifier(EventScope& scope, Object attribute) {
    const Object owner = Owners::of(scope, attribute);
    return applescript::elementByName(owner.type->specifier(scope, owner), systemevents::attribute,
                                      std::string(row(attribute).name));
  }

  static constexpr PropertyRow properties[]{
      {applescript::fourCharCode("pnam"), name},
      {systemevents::value, value, setValue},
      {systemevents::settable, isSettable},
  };
  static constexpr ObjectClass type{systemevents::attribute, "attribute", properties, {}, specifier};
};

} // namespace tabwright::scripting
