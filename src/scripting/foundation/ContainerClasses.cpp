// NSDictionary and NSArray with their mutable kinds. The immutable ones lack the methods that change them; the data is
// kept alike. A class method makes an object of the class that was asked, so the mutable kinds inherit it as it is.
#include "applescript/ScriptError.h"
#include "applescript/values/Errors.h"
#include "scripting/foundation/FoundationObject.h"

#include <fmt/core.h>

namespace tabwright::scripting {

using applescript::Label;
using applescript::Value;
namespace errorNumber = applescript::errorNumber;
namespace errors = applescript::errors;

namespace {

// ------------------------------------------------------------ dictionaries

Value emptyDictionary(FoundationObject& self, const Arguments&) {
  return makeObject(self.type(), FoundationDictionary{});
}

Value dictionaryOf(FoundationObject& self, const Arguments& arguments) {
  return makeObject(self.type(), dictionaryArgument(arguments, 0));
}

Value allKeys(FoundationObject& self, const Arguments&) {
  FoundationArray keys;
  keys.items.reserve(self.as<FoundationDictionary>().entries().size());
  // Keys that were labels of a record are texts from here on.
  for (const auto& entry : self.as<FoundationDictionary>().entries())
    keys.items.emplace_back(entry.first.name);
  return makeObject(arrayClass, std::move(keys));
}

Value allValues(FoundationObject& self, const Arguments&) {
  FoundationArray values;
  for (const auto& entry : self.as<FoundationDictionary>().entries())
    values.items.push_back(entry.second);
  return makeObject(arrayClass, std::move(values));
}

Value valueForKey(FoundationObject& self, const Arguments& arguments) {
  const Value* value = self.as<FoundationDictionary>().find(textArgument(arguments, 0));
  return value != nullptr ? bridged(*value) : Value::missing();
}

/// Sets an entry; `missing value` is stored too, and is JSON's null when the dictionary is written.
Value setValue(FoundationObject& self, const Arguments& arguments) {
  self.as<FoundationDictionary>().set(Label{0, textArgument(arguments, 1)}, stored(arguments[0]));
  return Value::missing();
}

Value setObject(FoundationObject& self, const Arguments& arguments) {
  if (arguments[0].isMissing())
    throw errors::of(errorNumber::handlerFailed,
                     fmt::format("*** -[__NSDictionaryM setObject:forKey:]: object cannot be nil (key: {})",
                                 textArgument(arguments, 1)));
  return setValue(self, arguments);
}

Value removeObject(FoundationObject& self, const Arguments& arguments) {
  self.as<FoundationDictionary>().remove(textArgument(arguments, 0));
  return Value::missing();
}

Value dictionaryCount(FoundationObject& self, const Arguments&) {
  return Value(static_cast<std::int64_t>(self.as<FoundationDictionary>().entries().size()));
}

constexpr FoundationMethod dictionaryClassMethods[]{
    {"dictionary", emptyDictionary},
    {"dictionaryWithDictionary:", dictionaryOf},
};

constexpr FoundationMethod dictionaryInitializers[]{
    {"init", emptyDictionary},
    {"initWithDictionary:", dictionaryOf},
};

constexpr FoundationMethod dictionaryMethods[]{
    {"allKeys", allKeys},           {"allValues", allValues},      {"count", dictionaryCount},
    {"objectForKey:", valueForKey}, {"valueForKey:", valueForKey},
};

constexpr FoundationMethod mutableDictionaryMethods[]{
    {"removeObjectForKey:", removeObject},
    {"setObject:forKey:", setObject},
    {"setValue:forKey:", setValue},
};

// ------------------------------------------------------------------ arrays

Value emptyArray(FoundationObject& self, const Arguments&) {
  return makeObject(self.type(), FoundationArray{});
}

Value arrayOf(FoundationObject& self, const Arguments& arguments) {
  return makeObject(self.type(), arrayArgument(arguments, 0));
}

Value arrayCount(FoundationObject& self, const Arguments&) {
  return Value(static_cast<std::int64_t>(self.as<FoundationArray>().items.size()));
}

/// Counts from 0, as Foundation does, and no index is negative.
Value itemAt(const FoundationArray& array, std::int64_t index) {
  const auto count = static_cast<std::int64_t>(array.items.size());
  if (index < 0 || index >= count)
    throw errors::of(errorNumber::handlerFailed,
                     count == 0 ? fmt::format("index {} beyond bounds for empty array", index)
                                : fmt::format("index {} beyond bounds [0 .. {}]", index, count - 1));
  return bridged(array.items[static_cast<std::size_t>(index)]);
}

Value objectAtIndex(FoundationObject& self, const Arguments& arguments) {
  return itemAt(self.as<FoundationArray>(), integerArgument(arguments, 0));
}

Value firstObject(FoundationObject& self, const Arguments&) {
  const FoundationArray& array = self.as<FoundationArray>();
  return array.items.empty() ? Value::missing() : itemAt(array, 0);
}

Value lastObject(FoundationObject& self, const Arguments&) {
  const FoundationArray& array = self.as<FoundationArray>();
  return array.items.empty() ? Value::missing() : itemAt(array, static_cast<std::int64_t>(array.items.size()) - 1);
}

Value joined(FoundationObject& self, const Arguments& arguments) {
  const std::string separator = textArgument(arguments, 0);
  std::string text;
  bool isFirst = true;
  // Items needn't be texts: each is joined in the form that it has as one.
  for (const Value& item : self.as<FoundationArray>().items) {
    if (!isFirst)
      text += separator;
    text += textArgument({item}, 0);
    isFirst = false;
  }
  return makeObject(stringClass, applescript::Text(std::move(text)));
}

// An array that is added to itself is added as it is now, as a list is: it would never end otherwise.
Value addObject(FoundationObject& self, const Arguments& arguments) {
  const auto* foreign = arguments[0].get<Value::ForeignPointer>();
  const bool isItself = foreign && foreign->get() == &self;
  self.as<FoundationArray>().items.push_back(isItself ? unbridged(arguments[0]) : stored(arguments[0]));
  return Value::missing();
}

constexpr FoundationMethod arrayClassMethods[]{
    {"array", emptyArray},
    {"arrayWithArray:", arrayOf},
};

constexpr FoundationMethod arrayInitializers[]{
    {"init", emptyArray},
    {"initWithArray:", arrayOf},
};

constexpr FoundationMethod arrayMethods[]{
    {"componentsJoinedByString:", joined}, {"count", arrayCount},
    {"firstObject", firstObject},          {"lastObject", lastObject},
    {"objectAtIndex:", objectAtIndex},
};

constexpr FoundationMethod mutableArrayMethods[]{{"addObject:", addObject}};

} // namespace

constinit const FoundationClass dictionaryClass{"NSDictionary", &objectClass, dictionaryClassMethods,
                                                dictionaryInitializers, dictionaryMethods};
constinit const FoundationClass mutableDictionaryClass{
    "NSMutableDictionary", &dictionaryClass, {}, {}, mutableDictionaryMethods};
constinit const FoundationClass arrayClass{"NSArray", &objectClass, arrayClassMethods, arrayInitializers, arrayMethods};
constinit const FoundationClass mutableArrayClass{"NSMutableArray", &arrayClass, {}, {}, mutableArrayMethods};

} // namespace tabwright::scripting
