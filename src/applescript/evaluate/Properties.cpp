// Properties of values of the language; those of application objects are Applications.cpp's.
#include "applescript/evaluate/Evaluator.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Dates.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace tabwright::applescript {

namespace {

Value idOf(const std::string& text) {
  std::vector<Value> codePoints;
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  for (int64_t at = 0; at < size;) {
    UChar32 c = 0;
    U8_NEXT_OR_FFFD(bytes, at, size, c);
    codePoints.emplace_back(std::int64_t{c});
  }
  return codePoints.size() == 1 ? codePoints.front() : Value::list(std::move(codePoints));
}

std::string quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text)
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

} // namespace

Value Evaluator::implicitTarget() {
  return frame_->target.isNothing() ? Value(frame_->self) : frame_->target;
}

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
  if (auto value = propertyOfValue(Value(frame_->self), property))
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
      if (auto value = propertyOfValue(unwrapped.value_or(given), property))
        return std::move(*value);
    }
    const Value::ForeignPointer receiver = *foreign;
    return sendForeign(*receiver, property.name, {});
  }
  if (auto value = propertyOfValue(given, property))
    return std::move(*value);
  throw errors::cannotGet(fmt::format("{} of {}", property.name, shortSourceForm(given)));
}

std::optional<Value> Evaluator::propertyOfValue(const Value& value, const Label& property) {
  if (const auto* record = value.get<Value::RecordPointer>()) {
    if (const Value* field = (*record)->find(property))
      return *field;
    if (property.code == codes::length)
      return static_cast<std::int64_t>((*record)->fields.size());
  } else if (const auto* script = value.get<Value::ScriptPointer>()) {
    if (const Value* own = findProperty(**script, property); own && !own->isNothing())
      return *own;
    if (property.code == codes::name)
      return (*script)->name().empty() ? surroundings_.ownName : (*script)->name();
    if (property.code == codes::parent && !(*script)->parent.isNothing())
      return (*script)->parent;
  } else if (const auto* text = value.get<Text>()) {
    if (auto found = textProperty(*text, property.code))
      return found;
  } else if (const auto* list = value.get<Value::ListPointer>()) {
    if (auto found = listProperty(*list, property))
      return found;
  } else if (const auto* date = value.get<Date>()) {
    if (auto found = dateProperty(*date, property.code))
      return found;
  } else if (const auto* constant = value.get<Value::EnumeratorPointer>();
             constant && (*constant)->code == codes::appleScript) {
    if (property.code == codes::version)
      return "2.8";
    if (property.code == codes::name)
      return "AppleScript";
  }
  if (property.code == codes::className)
    return classOf(value);
  return {};
}

std::optional<Value> Evaluator::textProperty(const Text& text, FourCharCode property) {
  switch (property) {
  case codes::length:
    return static_cast<std::int64_t>(characters_.count(text));
  case codes::id:
    return idOf(text.utf8());
  case codes::quotedForm:
    return quoted(text.utf8());
  case codes::text:
  case codes::string:
  case codes::unicodeText:
    return Value(text);
  default:
    return {};
  }
}

std::optional<Value> Evaluator::listProperty(const Value::ListPointer& list, const Label& property) {
  const std::vector<Value>& items = list->items;
  switch (property.code) {
  case codes::length:
    return static_cast<std::int64_t>(items.size());
  case codes::reverse:
    return Value::list({items.rbegin(), items.rend()});
  case codes::rest:
    if (items.empty())
      return {};
    return Value::list({items.begin() + 1, items.end()});
  case codes::className:
    return {};
  default:
    break;
  }
  // A list of objects answers with the list of their properties.
  const auto isObject = [](const Value& item) {
    const Value object = lookThrough(item);
    const auto* specifier = object.get<Value::SpecifierPointer>();
    return specifier && (*specifier)->application;
  };
  if (property.code == 0 || items.empty() || !std::ranges::all_of(items, isObject))
    return {};
  std::vector<Value> values;
  values.reserve(list->items.size());
  for (std::size_t index = 0; index < list->items.size(); ++index)
    values.push_back(propertyOf(list->items[index], property, Mode::value));
  return Value::list(std::move(values));
}

} // namespace tabwright::applescript
