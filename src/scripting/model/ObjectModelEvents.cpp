// The events that all applications answer alike, and what their own commands need of resolution: the objects that an
// event is about, and the place that `make … at` names.
#include "applescript/values/Errors.h"
#include "scripting/model/ObjectModel.h"

#include <algorithm>

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::ObjectSpecifier;
using applescript::ScriptError;
using applescript::Value;
using Form = ObjectSpecifier::Form;
namespace events = applescript::events;
namespace keywords = applescript::keywords;
namespace errorNumber = applescript::errorNumber;
namespace errors = applescript::errors;

namespace {

/// All objects in what was found, in a row. A plain value among them is an error.
void gather(const Found& found, std::vector<Object>& objects, const ObjectSpecifier& specifier,
            const applescript::Terminology& terminology) {
  if (const auto* object = std::get_if<Object>(&found.what)) {
    objects.push_back(*object);
  } else if (const auto* list = std::get_if<std::vector<Found>>(&found.what)) {
    for (const Found& each : *list)
      gather(each, objects, specifier, terminology);
  } else {
    throw errors::cannotGet(specifier, terminology);
  }
}

/// The number of things in what was found, lists within lists counted through.
std::int64_t leaves(const Found& found) {
  const auto* list = std::get_if<std::vector<Found>>(&found.what);
  if (!list)
    return 1;
  std::int64_t total = 0;
  for (const Found& each : *list)
    total += leaves(each);
  return total;
}

/// `missing value` isn't there, nor is a list of nothing else.
bool isThere(const Found& found) {
  if (const auto* value = std::get_if<Value>(&found.what))
    return !value->isMissing();
  if (const auto* list = std::get_if<std::vector<Found>>(&found.what))
    return std::ranges::any_of(*list, isThere);
  return true;
}

} // namespace

std::optional<Value> ObjectModel::answer(EventScope& scope) const {
  const applescript::EventCode code = scope.message().code;
  if (code == events::get)
    return get(scope);
  if (code == events::set) {
    set(scope);
    return Value::missing();
  }
  if (code == events::count)
    return Value(count(scope));
  if (code == events::exists)
    return Value(exists(scope));
  return std::nullopt;
}

Value ObjectModel::subject(EventScope& scope) const {
  if (scope.message().directObject)
    return *scope.message().directObject;
  // Inside a `tell` a command without direct object is about what is told.
  if (scope.message().subject)
    return Value(scope.message().subject);
  return Value(scope.root());
}

Value ObjectModel::get(EventScope& scope) const {
  const auto read = [&](const auto& self, const Value& target) -> Value {
    if (const auto* specifier = target.get<Value::SpecifierPointer>())
      return value(scope, resolve(scope, **specifier));
    // Each item is read by itself, and lists within lists stay lists.
    if (const auto* list = target.get<Value::ListPointer>()) {
      std::vector<Value> items;
      for (const Value& each : (*list)->items)
        items.push_back(self(self, each));
      return Value::list(std::move(items));
    }
    return target;
  };
  return read(read, subject(scope));
}

void ObjectModel::set(EventScope& scope) const {
  const Value target = subject(scope);
  const Value* given = scope.message().parameter(keywords::data);
  if (!given)
    throw errors::missingParameter("to", events::set, terminology_);
  const auto* specifier = target.get<Value::SpecifierPointer>();
  if (!specifier)
    throw errors::of(errorNumber::cannotSet, "Can’t set what is no object of the application.");
  // `set URL of tab 1 to URL of tab 2` brings a specifier: setters get what it stands for.
  Value newValue = *given;
  if (const auto* source = newValue.get<Value::SpecifierPointer>();
      source && (*source)->application == scope.root()->application)
    newValue = value(scope, resolve(scope, **source));
  if ((*specifier)->form != Form::property)
    throw errors::cannotSet(**specifier, newValue, terminology_);

  // All owners are found before the first is set, so that a setter can't change who is meant.
  std::vector<Object> owners;
  gather(resolve(scope, *(*specifier)->container), owners, *(*specifier)->container, terminology_);
  for (const Object& owner : owners)
    setProperty(scope, **specifier, owner, newValue);
}

void ObjectModel::setProperty(EventScope& scope, const ObjectSpecifier& specifier, Object object,
                              const Value& newValue) const {
  const auto setOne = [&](applescript::FourCharCode code, const Value& to) {
    const auto row = std::ranges::find(object.type->properties, code, &PropertyRow::code);
    if (row == object.type->properties.end() || !row->set)
      throw errors::cannotSet(specifier, to, terminology_);
    row->set(scope, object, to);
  };
  const auto* record = newValue.get<Value::RecordPointer>();
  if (specifier.desiredClass != fourCharCode("pALL") || !record)
    return setOne(specifier.desiredClass, newValue);
  // `set properties of x to {…}` is each of them by itself: those before one that fails stay set.
  for (const auto& [label, field] : (*record)->fields)
    setOne(propertyCode(label), field);
}

std::int64_t ObjectModel::count(EventScope& scope) const {
  const Value target = subject(scope);
  const auto* list = target.get<Value::ListPointer>();
  if (list)
    return static_cast<std::int64_t>((*list)->items.size());
  const auto* specifier = target.get<Value::SpecifierPointer>();
  if (!specifier)
    throw errors::notUnderstood(target, events::count, terminology_);

  if (const Value* kind = scope.message().parameter(keywords::elementClass)) {
    const auto* name = kind->get<Value::ClassPointer>();
    if (name && (*name)->code != fourCharCode("cobj")) {
      // `count each tab of window 1`; the direct object may be the container, or the elements themselves.
      const bool isElements = (*specifier)->form != Form::property && (*specifier)->desiredClass == (*name)->code;
      if (!isElements)
        return leaves(resolve(scope, *applescript::everyElement(*specifier, (*name)->code)));
    }
  }
  const Found found = resolve(scope, **specifier);
  // `count window 1` counts what is in it, of every class.
  if (const auto* object = std::get_if<Object>(&found.what)) {
    std::int64_t total = 0;
    for (const ElementRow& row : object->type->elements)
      total += static_cast<std::int64_t>(row.count(scope, *object));
    return total;
  }
  if (const auto* plain = std::get_if<Value>(&found.what)) {
    if (const auto* items = plain->get<Value::ListPointer>())
      return static_cast<std::int64_t>((*items)->items.size());
  }
  return leaves(found);
}

bool ObjectModel::exists(EventScope& scope) const {
  const Value target = subject(scope);
  const auto* specifier = target.get<Value::SpecifierPointer>();
  if (!specifier)
    return !target.isMissing();
  try {
    return isThere(resolve(scope, **specifier));
  } catch (const ScriptError& error) {
    // Any other error, as of a browser that can't be reached, says nothing about being there.
    if (error.number() == errorNumber::noSuchObject || error.number() == errorNumber::invalidIndex)
      return false;
    throw;
  }
}

std::vector<Object> ObjectModel::objects(EventScope& scope, const Value& target) const {
  std::vector<Object> result;
  if (const auto* list = target.get<Value::ListPointer>()) {
    for (const Value& each : (*list)->items) {
      const std::vector<Object> some = objects(scope, each);
      result.insert(result.end(), some.begin(), some.end());
    }
    return result;
  }
  const auto* specifier = target.get<Value::SpecifierPointer>();
  if (!specifier)
    throw errors::cannotGet("what is no object of the application");
  gather(resolve(scope, **specifier), result, **specifier, terminology_);
  return result;
}

Object ObjectModel::object(EventScope& scope, const Value& target) const {
  const std::vector<Object> found = objects(scope, target);
  if (found.size() == 1)
    return found.front();
  const auto* specifier = target.get<Value::SpecifierPointer>();
  if (specifier)
    throw errors::cannotGet(**specifier, terminology_);
  throw errors::cannotGet("one object from a list of several");
}

InsertionPlace ObjectModel::place(EventScope& scope, const Value& target) const {
  const auto* pointer = target.get<Value::SpecifierPointer>();
  if (!pointer)
    return {object(scope, target), std::nullopt};
  const ObjectSpecifier& specifier = **pointer;
  const auto holder = [&](const applescript::SpecifierPointer& elements) {
    // `at end of tabs of w` names the elements, `at end of w` their container: both mean the same place.
    const bool isElements = elements->form == Form::every && elements->container;
    return object(scope, Value(isElements ? elements->container : elements));
  };
  switch (specifier.form) {
  case Form::beginning:
    return {holder(specifier.container), 0};
  case Form::end:
    return {holder(specifier.container), std::nullopt};
  case Form::before:
  case Form::after: {
    const Object beside = object(scope, Value(specifier.container));
    const auto container = parent(scope, beside);
    const auto at = container ? position(scope, *container, beside) : std::nullopt;
    if (!at)
      throw errors::cannotGet(specifier, terminology_);
    return {*container, specifier.form == Form::after ? *at + 1 : *at};
  }
  default:
    return {holder(*pointer), std::nullopt};
  }
}

} // namespace tabwright::scripting
