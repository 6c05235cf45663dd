// Messages are found by their selector in the tables of the class and of those it inherits from. Bridging is lazy: an
// object keeps the language's values, and wraps them one by one as methods hand them out. Containers copy lists and
// records that are put into them and share objects, as in Objective-C. A dictionary is its entries in order, with an
// index of their positions once there are more than a few.
#include "scripting/foundation/FoundationObject.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Names.h"
#include "applescript/values/Traversal.h"
#include "scripting/foundation/FoundationTime.h"
#include "scripting/model/Arguments.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::scripting {

using applescript::Label;
using applescript::Value;
namespace errorNumber = applescript::errorNumber;
namespace errors = applescript::errors;

namespace {

/// Below this many entries a search is faster than keeping an index.
constexpr std::size_t fewEntries = 16;

/// The nearest class that has the selector; its own tables go before those that it inherits.
const FoundationMethod* findMethod(const FoundationClass& type,
                                   std::span<const FoundationMethod> FoundationClass::* table,
                                   std::string_view selector) {
  for (const FoundationClass* each = &type; each != nullptr; each = each->superclass) {
    const auto method = std::ranges::find(each->*table, selector, &FoundationMethod::selector);
    if (method != (each->*table).end())
      return &*method;
  }
  return nullptr;
}

/// Records don't tell labels apart that differ in case only; the last one wins.
Value recordOf(const FoundationDictionary& dictionary) {
  auto record = std::make_shared<applescript::Record>();
  record->fields.reserve(dictionary.entries().size());
  if (dictionary.entries().size() <= fewEntries) {
    for (const auto& [label, value] : dictionary.entries())
      record->set(label, unbridged(value));
    return Value(std::move(record));
  }
  std::unordered_map<std::string, std::size_t> seen;
  for (const auto& [label, value] : dictionary.entries()) {
    const auto [place, isNew] = seen.emplace(applescript::foldedName(label.name), record->fields.size());
    if (isNew)
      record->fields.emplace_back(label, unbridged(value));
    else
      record->fields[place->second].second = unbridged(value);
  }
  return Value(std::move(record));
}

const Value& argumentAt(const Arguments& arguments, std::size_t position) {
  if (position >= arguments.size())
    throw errors::of(errorNumber::handlerFailed, "The message has too few arguments.");
  return arguments[position];
}

} // namespace

// ------------------------------------------------------------ dictionaries

std::size_t FoundationDictionary::positionOf(std::string_view key) const {
  if (entries_.size() > fewEntries) {
    const auto found = positions_.find(std::string(key));
    return found == positions_.end() ? entries_.size() : found->second;
  }
  const auto found =
      std::ranges::find(entries_, key, [](const Entry& entry) -> const std::string& { return entry.first.name; });
  return static_cast<std::size_t>(found - entries_.begin());
}

const Value* FoundationDictionary::find(std::string_view key) const {
  const std::size_t position = positionOf(key);
  return position < entries_.size() ? &entries_[position].second : nullptr;
}

void FoundationDictionary::set(Label key, Value value) {
  const std::size_t position = positionOf(key.name);
  if (position < entries_.size()) {
    entries_[position].second = std::move(value);
    return;
  }
  entries_.emplace_back(std::move(key), std::move(value));
  // From here on a search would take longer than the index.
  if (entries_.size() == fewEntries + 1) {
    for (std::size_t each = 0; each < entries_.size(); ++each)
      positions_.emplace(entries_[each].first.name, each);
  } else if (entries_.size() > fewEntries) {
    positions_.emplace(entries_.back().first.name, entries_.size() - 1);
  }
}

void FoundationDictionary::remove(std::string_view key) {
  const std::size_t position = positionOf(key);
  if (position == entries_.size())
    return;
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
  // All that stood behind it has moved.
  positions_.clear();
  if (entries_.size() > fewEntries) {
    for (std::size_t each = 0; each < entries_.size(); ++each)
      positions_.emplace(entries_[each].first.name, each);
  }
}

// ----------------------------------------------------------------- objects

Value FoundationObject::send(std::string_view selector, const Arguments& arguments) {
  const bool isClass = std::holds_alternative<FoundationMetaclass>(payload_);
  const bool isAllocated = std::holds_alternative<FoundationAllocated>(payload_);
  // A class answers its class methods, the result of `alloc` initializers alone, an object the rest.
  const auto table = isClass       ? &FoundationClass::classMethods
                     : isAllocated ? &FoundationClass::initializers
                                   : &FoundationClass::methods;
  const FoundationMethod* method = findMethod(type_, table, selector);
  if (method == nullptr)
    throw errors::notUnderstood(description(), selector);
  const auto colons = static_cast<std::size_t>(std::ranges::count(selector, ':'));
  if (arguments.size() != colons)
    throw errors::of(errorNumber::handlerFailed,
                     fmt::format("“{}” takes {} arguments, not {}.", selector, colons, arguments.size()));
  // Most messages bring none, and then the arguments aren't copied.
  const bool hasReferences =
      std::ranges::any_of(arguments, [](const Value& value) { return value.is<Value::ReferencePointer>(); });
  if (!hasReferences)
    return method->call(*this, arguments);
  Arguments plain = arguments;
  for (Value& value : plain) {
    if (value.is<Value::ReferencePointer>())
      value = applescript::plainValue(value);
  }
  return method->call(*this, plain);
}

std::optional<Value> FoundationObject::unwrapped() const {
  const applescript::Traversal traversal; // a mutable array may hold itself
  if (const auto* text = get<applescript::Text>())
    return Value(*text);
  if (const auto* dictionary = get<FoundationDictionary>())
    return recordOf(*dictionary);
  if (const auto* array = get<FoundationArray>()) {
    std::vector<Value> items;
    items.reserve(array->items.size());
    std::ranges::transform(array->items, std::back_inserter(items), unbridged);
    return Value::list(std::move(items));
  }
  if (const auto* number = get<FoundationNumber>())
    return number->value;
  if (const auto* date = get<FoundationDate>())
    return Value(localDate(date->secondsSince1970));
  if (get<FoundationNull>() != nullptr)
    return Value::missing();
  // Classes, data and character sets have no form in the language.
  return std::nullopt;
}

std::string FoundationObject::description() const {
  return fmt::format("«class ocid» {}", type_.name);
}

Value makeObject(const FoundationClass& type, FoundationPayload payload) {
  return Value(Value::ForeignPointer(std::make_shared<FoundationObject>(type, std::move(payload))));
}

// ---------------------------------------------------------------- bridging

Value bridged(const Value& value) {
  if (const auto* text = value.get<applescript::Text>())
    return makeObject(stringClass, *text);
  if (value.is<std::int64_t>() || value.is<double>() || value.is<bool>())
    return makeObject(numberClass, FoundationNumber{value});
  if (value.isMissing())
    return makeObject(nullClass, FoundationNull{});
  if (const auto* date = value.get<applescript::Date>())
    return makeObject(dateClass, FoundationDate{secondsSince1970(*date)});
  if (value.is<Value::ListPointer>())
    return makeObject(mutableArrayClass, arrayArgument({value}, 0));
  if (value.is<Value::RecordPointer>())
    return makeObject(mutableDictionaryClass, dictionaryArgument({value}, 0));
  return value;
}

Value stored(const Value& value) {
  return value.deepCopy();
}

Value unbridged(const Value& value) {
  const applescript::Traversal traversal;
  if (const auto* foreign = value.get<Value::ForeignPointer>()) {
    if (auto plain = (*foreign)->unwrapped())
      return std::move(*plain);
    return value;
  }
  if (const auto* list = value.get<Value::ListPointer>()) {
    std::vector<Value> items;
    items.reserve((*list)->items.size());
    std::ranges::transform((*list)->items, std::back_inserter(items), unbridged);
    return Value::list(std::move(items));
  }
  if (const auto* record = value.get<Value::RecordPointer>()) {
    std::vector<std::pair<Label, Value>> fields;
    fields.reserve((*record)->fields.size());
    for (const auto& [label, field] : (*record)->fields)
      fields.emplace_back(label, unbridged(field));
    return Value(std::make_shared<applescript::Record>(std::move(fields)));
  }
  return value;
}

std::string textArgument(const Arguments& arguments, std::size_t position) {
  const Value& value = argumentAt(arguments, position);
  // The most frequent argument, taken without making a value of it.
  if (const auto* text = payloadOf<applescript::Text>(value))
    return text->utf8();
  return requireText(unbridged(value));
}

std::int64_t integerArgument(const Arguments& arguments, std::size_t position) {
  return requireInteger(unbridged(argumentAt(arguments, position)));
}

FoundationDictionary dictionaryArgument(const Arguments& arguments, std::size_t position) {
  const Value& value = argumentAt(arguments, position);
  if (const auto* dictionary = payloadOf<FoundationDictionary>(value))
    return *dictionary;
  const auto* record = value.get<Value::RecordPointer>();
  if (record == nullptr)
    throw errors::of(errorNumber::handlerFailed, "A dictionary is made of a record or a dictionary only.");
  FoundationDictionary dictionary;
  dictionary.reserve((*record)->fields.size());
  for (const auto& [label, field] : (*record)->fields)
    // The label goes along, so that the way back gives the same record.
    dictionary.set(label, stored(field));
  return dictionary;
}

FoundationArray arrayArgument(const Arguments& arguments, std::size_t position) {
  const Value& value = argumentAt(arguments, position);
  if (const auto* array = payloadOf<FoundationArray>(value))
    return *array;
  const auto* list = value.get<Value::ListPointer>();
  if (list == nullptr)
    throw errors::of(errorNumber::handlerFailed, "An array is made of a list or an array only.");
  FoundationArray array;
  array.items.reserve((*list)->items.size());
  std::ranges::transform((*list)->items, std::back_inserter(array.items), stored);
  return array;
}

} // namespace tabwright::scripting
