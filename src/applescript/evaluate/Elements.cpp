// Elements of values: items of lists, pieces of text (with TextContainers.cpp). The container is evaluated first, then
// the key, once; `whose` and a class other than `item` narrow the candidates before one is picked.
#include "applescript/evaluate/Evaluator.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Dates.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace tabwright::applescript {

namespace {

using Form = ElementAccess::Form;

bool isTextElement(FourCharCode code) {
  return code == codes::item || code == codes::character || code == codes::word || code == codes::paragraph ||
         code == codes::textItem || isTextClass(code);
}

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
  const Value container =
      lookThrough(expression.container ? evaluate(*expression.container, Mode::designation) : implicitTarget());
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return specifierElement(*specifier, expression, mode);
  return elementOf(container, expression);
}

Value Evaluator::elementOf(const Value& given, const ElementAccess& expression) {
  const Value container = plain(given);
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return specifierElement(*specifier, expression, Mode::value);
  if (const auto* text = container.get<Text>(); text && !expression.test && isTextElement(expression.elementClass.code))
    return textElement(*text, expression);
  if (const auto* list = container.get<Value::ListPointer>();
      list && !expression.test && expression.elementClass.code == codes::item) {
    // The common case, without a copy of the list.
    const Value::ListPointer held = *list;
    return pick(held->items, expression, keyOf(expression), container);
  }
  const std::vector<Value> elements = candidates(container, expression);
  return pick(elements, expression, keyOf(expression), container);
}

std::vector<Value> Evaluator::candidates(const Value& container, const ElementAccess& expression) {
  std::vector<Value> elements;
  const FourCharCode code = expression.elementClass.code;
  if (const auto* list = container.get<Value::ListPointer>()) {
    std::ranges::copy_if((*list)->items, std::back_inserter(elements),
                         [&](const Value& item) { return isKindOf(item, code); });
  } else if (const auto* text = container.get<Text>(); text && isTextElement(code)) {
    for (const TextRange range : textRanges(*text, code))
      elements.emplace_back(text->utf8().substr(range.offset, range.length));
  } else {
    throw cannotGetElement(expression, keyOf(expression), container);
  }
  if (!expression.test)
    return elements;
  std::vector<Value> passing;
  for (Value& element : elements) {
    if (passes(element, *expression.test))
      passing.push_back(std::move(element));
  }
  return passing;
}

std::size_t Evaluator::position(std::size_t count, const ElementAccess& expression, const ElementKey& key,
                                const Value& container) {
  std::int64_t index = 0;
  const auto size = static_cast<std::int64_t>(count);
  switch (expression.form) {
  case Form::index:
    index = integerOf(key.first);
    index = index < 0 ? size + index : index - 1;
    break;
  case Form::first:
    break;
  case Form::last:
    index = size - 1;
    break;
  case Form::middle:
    index = (size - 1) / 2;
    break;
  case Form::some:
    index = count == 0 ? -1 : static_cast<std::int64_t>(randomIndex(count));
    break;
  case Form::every:
  case Form::name:
  case Form::id:
  case Form::range:
  case Form::before:
  case Form::after:
    index = -1;
    break;
  }
  if (index < 0 || index >= size)
    throw cannotGetElement(expression, key, container);
  return static_cast<std::size_t>(index);
}

// First and last position of a range, both included; the ends may come in either order.
std::pair<std::size_t, std::size_t> Evaluator::positions(std::size_t count, const ElementAccess& expression,
                                                         const ElementKey& key, const Value& container) {
  const auto size = static_cast<std::int64_t>(count);
  const auto indexOf = [&](const Value& end) {
    const std::int64_t index = integerOf(end);
    return index < 0 ? size + index : index - 1;
  };
  const std::int64_t start = indexOf(key.first);
  const std::int64_t end = indexOf(key.last);
  if (std::min(start, end) < 0 || std::max(start, end) >= size)
    throw cannotGetElement(expression, key, container);
  return {static_cast<std::size_t>(std::min(start, end)), static_cast<std::size_t>(std::max(start, end))};
}

Value Evaluator::pick(const std::vector<Value>& elements, const ElementAccess& expression, const ElementKey& key,
                      const Value& container) {
  if (expression.form == Form::every)
    return Value::list(elements);
  if (expression.form == Form::range) {
    const auto [first, last] = positions(elements.size(), expression, key, container);
    const auto at = [&](std::size_t index) { return elements.begin() + static_cast<std::ptrdiff_t>(index); };
    return Value::list({at(first), at(last) + 1});
  }
  return elements[position(elements.size(), expression, key, container)];
}

std::size_t Evaluator::randomIndex(std::size_t count) {
  return std::min(static_cast<std::size_t>(randomFraction() * static_cast<double>(count)), count - 1);
}

// `count of characters of t`, `count of windows whose …`: counted where they are, instead of made into a list first.
Value Evaluator::countElements(const ElementAccess& expression) {
  if (auto special = specialElement(expression))
    return countOf(*special);
  const Value container =
      plain(expression.container ? evaluate(*expression.container, Mode::designation) : implicitTarget());
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return countOf(specifierElement(*specifier, expression, Mode::designation));
  const FourCharCode code = expression.elementClass.code;
  if (const auto* text = container.get<Text>(); text && !expression.test && expression.form == Form::every) {
    if (code == codes::character || code == codes::item)
      return static_cast<std::int64_t>(characters_.count(*text));
    if (isTextElement(code) && !isTextClass(code))
      return static_cast<std::int64_t>(textRanges(*text, code).size());
  }
  return countOf(elementOf(container, expression));
}

} // namespace tabwright::applescript
