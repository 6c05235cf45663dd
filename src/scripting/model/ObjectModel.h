#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/terminology/Terminology.h"
#include "applescript/values/ObjectSpecifier.h"
#include "scripting/model/EventScope.h"
#include "scripting/model/ObjectClass.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::scripting {

/// A place among the elements of an object, where `make … at` puts something.
struct InsertionPlace {
  Object container;
  std::optional<std::size_t> position; ///< 0-based, before which to insert; nothing: at the end
};

/// Resolves object specifiers against an application that is described by tables (ObjectClass.h), and answers the
/// events that are alike in all applications: get, set, count and exists.
///
///     ObjectModel model(applicationClass, chromiumTerminology());
///     BrowserScope scope(model, …, message);
///     if (std::optional<Value> answer = model.answer(scope)) return *answer;
///     for (Object tab : model.objects(scope, model.subject(scope))) …            // a command of the application's own
///
/// All forms of specifiers are understood: property, index (also negative), name, id, range, every, middle, some,
/// before, after, with `whose` tests on any of them. A property of several objects is the list of its values.
///
/// Errors are ScriptErrors: −1728 for what isn't there ("Can’t get window 3."), −1719 for an index that can't be one,
/// −10006 for what can't be set, −1708 for what isn't understood. Sentences name things in source form, without the
/// application, which the evaluator puts in front.
///
/// Immutable; one model serves all threads.
class ObjectModel {
public:
  /// Both must outlive the model.
  ObjectModel(const ObjectClass& root, const applescript::Terminology& terminology)
      : root_(root), terminology_(terminology) {}

  [[nodiscard]] const applescript::Terminology& terminology() const { return terminology_; }

  /// Answers get, set, count and exists; nothing for any other event, which is the application's to know. Throws
  /// ScriptError, and what the functions of the tables throw.
  [[nodiscard]] std::optional<applescript::Value> answer(EventScope& scope) const;

  /// The subject of the event: its direct object, else the target of the enclosing `tell`, else the application.
  [[nodiscard]] applescript::Value subject(EventScope& scope) const;

  /// Resolves a specifier, step by step. `underTest` is the object that a `whose` is tried on, in which specifiers of
  /// its test are rooted; null outside of one. Throws −1728 for what isn't there.
  [[nodiscard]] Found resolve(EventScope& scope, const applescript::ObjectSpecifier& specifier,
                              const Object* underTest = nullptr) const;

  /// The objects that a value names (a specifier, or a list of such), in order, those of nested lists in a row.
  /// Throws −1728 for anything that is no object.
  [[nodiscard]] std::vector<Object> objects(EventScope& scope, const applescript::Value& value) const;
  /// The one object that a value names; throws −1728 when it names none, or several.
  [[nodiscard]] Object object(EventScope& scope, const applescript::Value& value) const;

  /// The place that a specifier names: an insertion point, `before x`, `after x`, or an object, meaning its end. The
  /// container must be there; −1728 else.
  [[nodiscard]] InsertionPlace place(EventScope& scope, const applescript::Value& value) const;

  /// Position of an object among the elements of its class in a container, 0-based; nothing when it isn't there.
  [[nodiscard]] std::optional<std::size_t> position(EventScope& scope, Object container, Object element) const;

  /// A found thing as the answer of an event: objects as their specifiers, several as a list.
  [[nodiscard]] applescript::Value value(EventScope& scope, const Found& found) const;

  /// The code of a label: its own, or that of the dictionary's property with the label's words; 0 for other words.
  [[nodiscard]] applescript::FourCharCode propertyCode(const applescript::Label& label) const;

private:
  /// One step, from one object: a property, or elements by any form.
  Found step(EventScope& scope, const applescript::ObjectSpecifier& specifier, Object container,
             const Object* underTest) const;
  /// A property by its row, or one of those that all classes have.
  Found property(EventScope& scope, const applescript::ObjectSpecifier& specifier, Object object) const;
  /// `tab before t`, `tab after t`: of the same class and in the same container.
  Found neighbour(EventScope& scope, const applescript::ObjectSpecifier& specifier, const Object* underTest) const;
  /// Both ends included, in the order of the elements whichever end is named first.
  Found range(EventScope& scope, const applescript::ObjectSpecifier& specifier, Object container, const ElementRow& row,
              const Object* underTest) const;
  /// An end of a range as an index from 1, or negative.
  std::int64_t boundary(EventScope& scope, const applescript::ObjectSpecifier& specifier, Object container,
                        const applescript::Value& key, const Object* underTest) const;
  /// The element with an id or a name; nothing when there is none, or the key can be neither.
  std::optional<Object> find(EventScope& scope, const applescript::ObjectSpecifier& specifier, Object container,
                             const ElementRow& row) const;
  /// A `whose` test on one object. Specifiers within are resolved for each object anew.
  bool passes(EventScope& scope, const applescript::SpecifierTest& test, Object object) const;
  /// A side of a comparison: a specifier's value for the object under test, or the plain value.
  applescript::Value operand(EventScope& scope, const applescript::Value& value, Object object) const;
  /// The object that contains another; nothing for the application.
  std::optional<Object> parent(EventScope& scope, Object object) const;

  applescript::Value get(EventScope& scope) const;
  void set(EventScope& scope) const;
  void setProperty(EventScope& scope, const applescript::ObjectSpecifier& specifier, Object object,
                   const applescript::Value& value) const;
  std::int64_t count(EventScope& scope) const;
  bool exists(EventScope& scope) const;

  const ObjectClass& root_;
  const applescript::Terminology& terminology_;
};

} // namespace tabwright::scripting
