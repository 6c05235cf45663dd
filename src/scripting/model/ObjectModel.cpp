// Resolution walks a specifier from its root inwards: each step is taken from the object, or from each of the objects,
// that the steps before it led to. Tests are evaluated here, element by element, so that a `whose` over all tabs costs
// one event. The events built on resolution are in ObjectModelEvents.cpp.
#include "scripting/model/ObjectModel.h"

#include "applescript/values/Errors.h"
#include "applescript/values/Traversal.h"
#include "scripting/model/Arguments.h"
#include "scripting/model/Comparison.h"

#include <algorithm>
#include <random>

namespace tabwright::scripting {

using applescript::fourCharCode;
using applescript::Label;
using applescript::ObjectSpecifier;
using applescript::SpecifierTest;
using applescript::Term;
using applescript::Value;
namespace errors = applescript::errors;
using Form = ObjectSpecifier::Form;

namespace {

constexpr auto itemClass = fourCharCode("cobj");
constexpr auto idProperty = fourCharCode("ID  ");
constexpr auto nameProperty = fourCharCode("pnam");
constexpr auto classProperty = fourCharCode("pcls");
constexpr auto contentsProperty = fourCharCode("pcnt");
constexpr auto allProperties = fourCharCode("pALL");

/// Tables are short, so rows are searched one by one.
const ElementRow* findElements(const ObjectClass& type, applescript::FourCharCode code) {
  const auto row = std::ranges::find_if(type.elements, [&](const ElementRow& each) { return each.type->code == code; });
  return row == type.elements.end() ? nullptr : &*row;
}

const PropertyRow* findProperty(const ObjectClass& type, applescript::FourCharCode code) {
  const auto row = std::ranges::find(type.properties, code, &PropertyRow::code);
  return row == type.properties.end() ? nullptr : &*row;
}

/// A 1-based index, negative from the end, as a 0-based position; nothing outside.
std::optional<std::size_t> positionOf(std::int64_t index, std::size_t count) {
  const auto size = static_cast<std::int64_t>(count);
  const std::int64_t position = index > 0 ? index - 1 : size + index;
  if (index == 0 || position < 0 || position >= size)
    return std::nullopt;
  return static_cast<std::size_t>(position);
}

/// One of some, as `some tab` asks for. `count` is not 0.
std::size_t anyPosition(std::size_t count) {
  thread_local std::minstd_rand generator{std::random_device{}()};
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(generator);
}

/// One of a list by the forms that need no class: index, middle, some, every.
template <class Item>
std::optional<Item> pick(const ObjectSpecifier& specifier, const std::vector<Item>& items) {
  std::optional<std::size_t> position;
  if (specifier.form == Form::index)
    position = positionOf(requireInteger(specifier.key), items.size());
  else if (specifier.form == Form::middle && !items.empty())
    position = (items.size() - 1) / 2;
  else if (specifier.form == Form::some && !items.empty())
    position = anyPosition(items.size());
  return position ? std::optional<Item>(items[*position]) : std::nullopt;
}

/// A step into a value: `item 2 of bounds`, `URL of properties of tab 1`.
std::optional<Value> stepIntoValue(const ObjectSpecifier& specifier, const Value& value) {
  if (const auto* list = value.get<Value::ListPointer>(); list && specifier.desiredClass == itemClass)
    return specifier.form == Form::every ? std::optional<Value>(value) : pick(specifier, (*list)->items);
  if (const auto* record = value.get<Value::RecordPointer>(); record && specifier.form == Form::property) {
    if (const Value* field = (*record)->find(Label{specifier.desiredClass, ""}))
      return *field;
  }
  return std::nullopt;
}

} // namespace

Found ObjectModel::resolve(EventScope& scope, const ObjectSpecifier& specifier, const Object* underTest) const {
  switch (specifier.form) {
  case Form::application:
    return Object{&root_};
  // The object under test: outside of a `whose` there is none.
  case Form::tested:
    if (!underTest)
      throw errors::cannotGet(specifier, terminology_);
    return *underTest;
  case Form::before:
  case Form::after:
    return neighbour(scope, specifier, underTest);
  // An insertion point is no object: only `place` knows what to do with it.
  case Form::beginning:
  case Form::end:
    throw errors::cannotGet(specifier, terminology_);
  default:
    break;
  }
  const applescript::Traversal traversal; // a script can make a chain as long as it likes
  Found container = resolve(scope, *specifier.container, underTest);
  const auto take = [&](const auto& self, const Found& from) -> Found {
    if (const auto* object = std::get_if<Object>(&from.what))
      return step(scope, specifier, *object, underTest);
    if (const auto* value = std::get_if<Value>(&from.what)) {
      if (const auto inner = stepIntoValue(specifier, *value))
        return *inner;
      throw errors::cannotGet(specifier, terminology_);
    }
    std::vector<Found> results;
    for (const Found& each : std::get<std::vector<Found>>(from.what))
      results.push_back(self(self, each));
    return results;
  };
  // `item 2 of tabs of windows` is one of the list; any other class is a step from each of its items.
  if (const auto* list = std::get_if<std::vector<Found>>(&container.what);
      list && specifier.desiredClass == itemClass && specifier.form != Form::property) {
    if (specifier.form == Form::every)
      return container;
    if (const auto item = pick(specifier, *list))
      return *item;
    throw errors::cannotGet(specifier, terminology_);
  }
  return take(take, container);
}

Found ObjectModel::step(EventScope& scope, const ObjectSpecifier& specifier, Object container,
                        const Object* underTest) const {
  if (specifier.form == Form::property)
    return property(scope, specifier, container);
  const ElementRow* row = findElements(*container.type, specifier.desiredClass);
  if (!row)
    throw errors::cannotGet(specifier, terminology_);
  // Both name one element, which a test may still rule out: `window "A" whose visible is true`.
  if (specifier.form == Form::name || specifier.form == Form::id) {
    const auto element = find(scope, specifier, container, *row);
    if (!element || (specifier.test && !passes(scope, *specifier.test, *element)))
      throw errors::cannotGet(specifier, terminology_);
    return *element;
  }
  if (specifier.form == Form::range)
    return range(scope, specifier, container, *row, underTest);

  const std::size_t count = row->count(scope, container);
  // The most frequent step makes one object only.
  if (!specifier.test && specifier.form == Form::index) {
    const auto position = positionOf(requireInteger(specifier.key), count);
    if (!position)
      throw requireInteger(specifier.key) == 0 ? errors::invalidIndex(specifier, terminology_)
                                               : errors::cannotGet(specifier, terminology_);
    return row->at(scope, container, *position);
  }
  // `first window whose …` is the common case: the search ends at the match that the index asks for.
  const std::size_t enough = specifier.form == Form::index && requireInteger(specifier.key) > 0
                                 ? static_cast<std::size_t>(requireInteger(specifier.key))
                                 : count;
  std::vector<Found> matches;
  for (std::size_t position = 0; position < count && matches.size() < enough; ++position) {
    const Object element = row->at(scope, container, position);
    if (!specifier.test || passes(scope, *specifier.test, element))
      matches.emplace_back(element);
  }
  if (specifier.form == Form::every)
    return matches;
  if (const auto match = pick(specifier, matches))
    return *match;
  throw errors::cannotGet(specifier, terminology_);
}

Found ObjectModel::property(EventScope& scope, const ObjectSpecifier& specifier, Object object) const {
  if (const PropertyRow* row = findProperty(*object.type, specifier.desiredClass)) {
    Found found = row->get(scope, object);
    return found;
  }
  switch (specifier.desiredClass) {
  case classProperty:
    return Value(applescript::ClassName{object.type->code, std::string(object.type->words)});
  // `contents of x` is x itself.
  case contentsProperty:
    return object;
  case allProperties: {
    auto record = std::make_shared<applescript::Record>();
    for (const PropertyRow& row : object.type->properties) {
      if (!row.isInProperties)
        continue;
      // A property that neither has a word for is named by its code.
      const Term* term = terminology_.findCode(Term::Kind::property, row.code);
      if (!term)
        term = applescript::languageTerminology().findCode(Term::Kind::property, row.code);
      try {
        record->set(Label{row.code, term ? std::string(term->words) : applescript::toString(row.code)},
                    value(scope, row.get(scope, object)));
      } catch (const applescript::ScriptError& error) {
        // Left out is what the object hasn't at the moment, such as the active tab of developer tools.
        if (error.number() != applescript::errorNumber::noSuchObject)
          throw;
      }
    }
    return Value(record);
  }
  default:
    throw errors::cannotGet(specifier, terminology_);
  }
}

std::optional<Object> ObjectModel::find(EventScope& scope, const ObjectSpecifier& specifier, Object container,
                                        const ElementRow& row) const {
  const bool isByID = specifier.form == Form::id;
  if (isByID && row.byID)
    return row.byID(scope, container, specifier.key);
  const std::optional<std::string> key = idText(specifier.key);
  // A key that is neither text nor a whole number names nothing.
  if (!key)
    return std::nullopt;
  if (!isByID && row.byName)
    return row.byName(scope, container, *key);
  const PropertyRow* property = findProperty(*row.type, isByID ? idProperty : nameProperty);
  if (!property)
    return std::nullopt;
  // No function of the row's own, so all are asked for the property.
  const std::size_t count = row.count(scope, container);
  for (std::size_t position = 0; position < count; ++position) {
    const Object element = row.at(scope, container, position);
    const Found found = property->get(scope, element);
    const auto* candidate = std::get_if<Value>(&found.what);
    const std::optional<std::string> text = candidate ? idText(*candidate) : std::nullopt;
    if (text && (isByID ? *text == *key : sameIgnoringCase(*text, *key)))
      return element;
  }
  return std::nullopt;
}

std::int64_t ObjectModel::boundary(EventScope& scope, const ObjectSpecifier& specifier, Object container,
                                   const Value& key, const Object* underTest) const {
  const auto* inner = key.get<Value::SpecifierPointer>();
  if (!inner)
    return requireInteger(key);
  // A specifier as a boundary, as in `tabs (tab 1) thru (tab 3)`, counts from the container where it is rooted in
  // nothing else.
  const Found found = resolve(scope, **inner, underTest ? underTest : &container);
  const auto* element = std::get_if<Object>(&found.what);
  const auto index = element ? position(scope, container, *element) : std::nullopt;
  if (!index)
    throw errors::cannotGet(specifier, terminology_);
  return static_cast<std::int64_t>(*index) + 1;
}

Found ObjectModel::range(EventScope& scope, const ObjectSpecifier& specifier, Object container, const ElementRow& row,
                         const Object* underTest) const {
  const std::size_t count = row.count(scope, container);
  const auto first = positionOf(boundary(scope, specifier, container, specifier.key, underTest), count);
  const auto last = positionOf(boundary(scope, specifier, container, specifier.rangeEnd, underTest), count);
  if (!first || !last)
    throw errors::cannotGet(specifier, terminology_);
  std::vector<Found> elements;
  for (std::size_t position = std::min(*first, *last); position <= std::max(*first, *last); ++position) {
    const Object element = row.at(scope, container, position);
    if (!specifier.test || passes(scope, *specifier.test, element))
      elements.emplace_back(element);
  }
  return elements;
}

std::optional<Object> ObjectModel::parent(EventScope& scope, Object object) const {
  if (!object.type->specifier)
    return std::nullopt;
  // An object knows its container by the specifier that names it; no class needs a row for it.
  const auto specifier = object.type->specifier(scope, object);
  if (!specifier->container)
    return std::nullopt;
  const Found found = resolve(scope, *specifier->container);
  const auto* container = std::get_if<Object>(&found.what);
  return container ? std::optional<Object>(*container) : std::nullopt;
}

std::optional<std::size_t> ObjectModel::position(EventScope& scope, Object container, Object element) const {
  const ElementRow* row = findElements(*container.type, element.type->code);
  if (!row)
    return std::nullopt;
  const std::size_t count = row->count(scope, container);
  for (std::size_t position = 0; position < count; ++position) {
    if (row->at(scope, container, position) == element)
      return position;
  }
  return std::nullopt;
}

Found ObjectModel::neighbour(EventScope& scope, const ObjectSpecifier& specifier, const Object* underTest) const {
  const Found found = resolve(scope, *specifier.container, underTest);
  const auto* object = std::get_if<Object>(&found.what);
  const auto container = object ? parent(scope, *object) : std::nullopt;
  const auto at = container ? position(scope, *container, *object) : std::nullopt;
  const ElementRow* row = at ? findElements(*container->type, object->type->code) : nullptr;
  // `window before tab 1` is nothing, as both have to be in one list.
  const bool isOfClass = object && object->type->code == specifier.desiredClass;
  if (!row || !isOfClass)
    throw errors::cannotGet(specifier, terminology_);
  const std::size_t wanted = specifier.form == Form::after ? *at + 1 : *at - 1; // wraps below the first one
  if (wanted >= row->count(scope, *container))
    throw errors::cannotGet(specifier, terminology_);
  return row->at(scope, *container, wanted);
}

Value ObjectModel::operand(EventScope& scope, const Value& operandValue, Object object) const {
  if (const auto* specifier = operandValue.get<Value::SpecifierPointer>())
    return value(scope, resolve(scope, **specifier, &object));
  return operandValue;
}

bool ObjectModel::passes(EventScope& scope, const SpecifierTest& test, Object object) const {
  const auto holds = [&](const auto& operand) { return passes(scope, *operand, object); };
  switch (test.kind) {
  case SpecifierTest::Kind::comparison:
    return compare(test.comparison, operand(scope, test.left, object), operand(scope, test.right, object),
                   test.considersCase ? TextCase::considered : TextCase::ignored);
  case SpecifierTest::Kind::both:
    return std::ranges::all_of(test.operands, holds);
  case SpecifierTest::Kind::either:
    return std::ranges::any_of(test.operands, holds);
  case SpecifierTest::Kind::negation:
    return std::ranges::none_of(test.operands, holds);
  }
  return false;
}

Value ObjectModel::value(EventScope& scope, const Found& found) const {
  if (const auto* value = std::get_if<Value>(&found.what))
    return *value;
  if (const auto* object = std::get_if<Object>(&found.what))
    // Only the application has none.
    return object->type->specifier ? Value(object->type->specifier(scope, *object)) : Value(scope.root());
  std::vector<Value> items;
  const auto& list = std::get<std::vector<Found>>(found.what);
  items.reserve(list.size());
  for (const Found& each : list)
    items.push_back(value(scope, each));
  return Value::list(std::move(items));
}

applescript::FourCharCode ObjectModel::propertyCode(const Label& label) const {
  if (label.code != 0)
    return label.code;
  // Words of the dictionary come before those of the language.
  for (const applescript::Terminology* table : {&terminology_, &applescript::languageTerminology()}) {
    for (const Term& term : table->rows()) {
      if (term.kind == Term::Kind::property && sameIgnoringCase(term.words, label.name))
        return term.code;
    }
  }
  return 0;
}

} // namespace tabwright::scripting
