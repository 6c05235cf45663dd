// Access to elements: the container is evaluated first, then the key, once. Those of application objects are
// Applications.cpp's.
#include "applescript/evaluate/Evaluator.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Dates.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Reference.h"

#include <fmt/core.h>
#include <unicode/utf8.h>

namespace tabwright::applescript {

namespace {

using Form = ElementAccess::Form;

std::string textFromCodePoints(const Value& value) {
  std::string text;
  const Value::ListPointer codePoints = listOf(value);
  for (const Value& item : codePoints->items) {
    const std::int64_t codePoint = integerOf(item);
    const bool isScalar = codePoint >= 0 && codePoint <= 0x10FFFF && (codePoint < 0xD800 || codePoint > 0xDFFF);
    if (!isScalar)
      throw errors::cannotGet(fmt::format("character id {}", codePoint));
    char bytes[U8_MAX_LENGTH];
    int32_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, static_cast<UChar32>(codePoint));
    text.append(bytes, static_cast<std::size_t>(length));
  }
  return text;
}

bool isEnd(const ExpressionPointer& key) {
  return key && key->kind == Expression::Kind::element && !static_cast<const ElementAccess&>(*key).container;
}

} // namespace

ElementKey Evaluator::keyOf(const ElementAccess& expression) {
  ElementKey key;
  if (expression.key)
    key.first = operand(*expression.key);
  if (expression.rangeEnd)
    key.last = operand(*expression.rangeEnd);
  return key;
}

// Forms that name a value whatever the target is: `date "2026-01-31"`, `character id 65`.
std::optional<Value> Evaluator::specialElement(const ElementAccess& expression) {
  if (expression.container || !expression.key)
    return {};
  const FourCharCode code = expression.elementClass.code;
  if (code == codes::date && (expression.form == Form::index || expression.form == Form::name)) {
    const Value text = operand(*expression.key);
    if (const auto date = dateFromText(textOf(text), Date{surroundings_.now()}))
      return Value(*date);
    throw errors::invalidDate(text);
  }
  if (expression.form == Form::id && (code == codes::character || isTextClass(code)))
    return Value(textFromCodePoints(operand(*expression.key)));
  return {};
}

Value Evaluator::evaluateElement(const ElementAccess& expression, Mode mode) {
  if (auto special = specialElement(expression))
    return std::move(*special);
  const Value container = containerOf(expression.container);
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return specifierElement(*specifier, expression, mode);
  return elementOf(container, expression);
}

Value Evaluator::elementOf(const Value& given, const ElementAccess& expression) {
  const Value container = plain(given);
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return specifierElement(*specifier, expression, Mode::value);
  if (const auto* text = container.get<Text>(); text && !expression.test && expression.form == Form::range &&
                                                isEnd(expression.key) && isEnd(expression.rangeEnd)) {
    const auto endOf = [this](const Expression& end) {
      const auto& access = static_cast<const ElementAccess&>(end);
      return ElementPicker::End{access, keyOf(access)};
    };
    const ElementPicker::End from = endOf(*expression.key);
    return picker_.pickBetween(*text, expression, from, endOf(*expression.rangeEnd));
  }
  const ElementKey key = keyOf(expression);
  if (!expression.test)
    return picker_.pick(container, expression, key);
  std::vector<Value> passing;
  std::vector<Value> candidates = picker_.candidates(container, expression, key);
  for (Value& element : candidates) {
    if (passes(element, *expression.test))
      passing.push_back(std::move(element));
  }
  return picker_.pickFrom(passing, expression, key, container);
}

// `count of characters of t`, `count of windows whose …`: counted where they are, instead of made into a list first.
Value Evaluator::countElements(const ElementAccess& expression) {
  if (auto special = specialElement(expression))
    return countOf(*special);
  const Value container = plain(containerOf(expression.container));
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return countOf(specifierElement(*specifier, expression, Mode::designation));
  if (const auto* text = container.get<Text>(); text && !expression.test && expression.form == Form::every) {
    if (const auto count = picker_.countPieces(*text, expression.elementClass.code))
      return *count;
  }
  return countOf(elementOf(container, expression));
}

} // namespace tabwright::applescript
