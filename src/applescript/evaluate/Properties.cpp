// Properties of values of the language; those of application objects are Applications.cpp's. A word without a container
// is the target's inside of a `tell`, and otherwise the script's own. References are looked through first, and foreign
// objects answer as what they unwrap to before they are sent a message.
#include "applescript/evaluate/Accesses.h"
#include "applescript/evaluate/Bridge.h"
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

namespace {

std::optional<Value> ownProperty(Evaluator& run, const Value& value, const Label& property) {
  if (auto found = propertyOfValue(value, property, run.picker.characters()))
    return found;
  // A script without a name of its own is the program that runs it.
  if (property.code == codes::name && value.is<Value::ScriptPointer>())
    return run.surroundings.ownName;
  // A list of objects answers with the list of their properties.
  const auto isObject = [](const Value& item) { return objectIn(lookThrough(item)) != nullptr; };
  const auto* pointer = value.get<Value::ListPointer>();
  if (!pointer || property.code == 0 || (*pointer)->items.empty() || !std::ranges::all_of((*pointer)->items, isObject))
    return {};
  const Value::ListPointer list = *pointer;
  std::vector<Value> values;
  values.reserve(list->items.size());
  for (std::size_t index = 0; index < list->items.size(); ++index)
    values.push_back(propertyOf(run, list->items[index], property, Mode::value));
  return Value::list(std::move(values));
}

} // namespace

Value evaluateProperty(Evaluator& run, const PropertyAccess& expression, Mode mode) {
  const Label& property = expression.property;
  // One for the whole script, whatever object it is written of.
  if (property.code == codes::textItemDelimiters)
    return run.script.textItemDelimiters;
  if (expression.container)
    return propertyOf(run, run.evaluate(*expression.container, Mode::designation), property, mode);
  if (!run.frame->target.isNothing())
    return propertyOf(run, run.frame->target, property, mode);
  // Outside of any `tell` a bare word that names no property of the script is a variable that nobody set.
  Value* own = findProperty(*run.frame->self, property);
  if (own && !own->isNothing())
    return *own;
  if (auto value = ownProperty(run, Value(run.frame->self), property))
    return std::move(*value);
  throw errors::undefinedVariable(property.name);
}

Value propertyOf(Evaluator& run, const Value& given, const Label& property, Mode mode) {
  if (given.is<Value::ReferencePointer>())
    return property.code == codes::contents ? lookThrough(given) : propertyOf(run, lookThrough(given), property, mode);
  if (const auto* specifier = given.get<Value::SpecifierPointer>())
    return specifierProperty(run, *specifier, property, mode);
  if (property.code == codes::contents)
    return given;
  if (const auto* foreign = given.get<Value::ForeignPointer>()) {
    if (property.code != 0) {
      // `length of x` of an array of the bridge is the list's; only what the language doesn't know goes to the object.
      const auto unwrapped = (*foreign)->unwrapped();
      if (auto value = ownProperty(run, unwrapped.value_or(given), property))
        return std::move(*value);
    }
    run.budget.require();
    return sendToForeign(*foreign, property.name, {});
  }
  if (auto value = ownProperty(run, given, property))
    return std::move(*value);
  throw errors::cannotGet(fmt::format("{} of {}", property.name, shortSourceForm(given)));
}

} // namespace tabwright::applescript
