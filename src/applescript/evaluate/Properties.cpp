// Properties of values of the language; those of application objects are Applications.cpp's.
#include "applescript/evaluate/Bridge.h"
#include "applescript/evaluate/Evaluator.h"
#include "applescript/evaluate/ScriptMembers.h"
#include "applescript/evaluate/ValueProperties.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::applescript {

Value Evaluator::evaluateProperty(const PropertyAccess& expression, Mode mode) {
  const Label& property = expression.property;
  if (property.code == codes::textItemDelimiters)
    return script_.textItemDelimiters;
  if (expression.container)
    return propertyOf(evaluate(*expression.container, Mode::designation), property, mode);
  if (!frame_->target.isNothing())
    return propertyOf(frame_->target, property, mode);
  // Outside of any `tell` a bare word that names no property of the script is a variable that nobody set.
  Value* own = findProperty(*frame_->self, property);
  if (own && !own->isNothing())
    return *own;
  if (auto value = ownProperty(Value(frame_->self), property))
    return std::move(*value);
  throw errors::undefinedVariable(property.name);
}

Value Evaluator::propertyOf(const Value& given, const Label& property, Mode mode) {
  if (given.is<Value::ReferencePointer>())
    return property.code == codes::contents ? lookThrough(given) : propertyOf(lookThrough(given), property, mode);
  if (const auto* specifier = given.get<Value::SpecifierPointer>())
    return specifierProperty(*specifier, property, mode);
  if (property.code == codes::contents)
    return given;
  if (const auto* foreign = given.get<Value::ForeignPointer>()) {
    if (property.code != 0) {
      const auto unwrapped = (*foreign)->unwrapped();
      if (auto value = ownProperty(unwrapped.value_or(given), property))
        return std::move(*value);
    }
    budget_.require();
    return sendToForeign(*foreign, property.name, {});
  }
  if (auto value = ownProperty(given, property))
    return std::move(*value);
  throw errors::cannotGet(fmt::format("{} of {}", property.name, shortSourceForm(given)));
}

std::optional<Value> Evaluator::ownProperty(const Value& value, const Label& property) {
  if (auto found = propertyOfValue(value, property, picker_.characters()))
    return found;
  if (property.code == codes::name && value.is<Value::ScriptPointer>())
    return surroundings_.ownName;
  // A list of objects answers with the list of their properties.
  const auto isObject = [](const Value& item) {
    const Value object = lookThrough(item);
    const auto* specifier = object.get<Value::SpecifierPointer>();
    return specifier && (*specifier)->application;
  };
  const auto* pointer = value.get<Value::ListPointer>();
  if (!pointer || property.code == 0 || (*pointer)->items.empty() || !std::ranges::all_of((*pointer)->items, isObject))
    return {};
  const Value::ListPointer list = *pointer;
  std::vector<Value> values;
  values.reserve(list->items.size());
  for (std::size_t index = 0; index < list->items.size(); ++index)
    values.push_back(propertyOf(list->items[index], property, Mode::value));
  return Value::list(std::move(values));
}

} // namespace tabwright::applescript
