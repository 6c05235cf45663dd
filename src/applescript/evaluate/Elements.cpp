// Access to elements: the container is evaluated first, then the key, once. Those of application objects are
// Applications.cpp's.
#include "applescript/evaluate/Accesses.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Dates.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

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
    // UTF-8 has no form for surrogates.
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

// `word 2` in `text from word 2 to word 4 of t`: an element without a container is one of the range's own text.
bool isEnd(const ExpressionPointer& key) {
  const auto* element = key ? as<ElementAccess>(*key) : nullptr;
  return element && !element->container;
}

// Forms that name a value whatever the target is: `date "2026-01-31"`, `character id 65`.
std::optional<Value> specialElement(Evaluator& run, const ElementAccess& expression) {
  if (expression.container || !expression.key || expression.isOrdinal)
    return {};
  const FourCharCode code = expression.elementClass.code;
  if (code == codes::date && (expression.form == Form::index || expression.form == Form::name)) {
    const Value text = run.operand(*expression.key);
    if (const auto date = dateFromText(textOf(text), Date{run.surroundings.now()}))
      return Value(*date);
    throw errors::invalidDate(text);
  }
  if (expression.form == Form::id && (code == codes::character || isTextClass(code)))
    return Value(textFromCodePoints(run.operand(*expression.key)));
  return {};
}

} // namespace

ElementKey keyOf(Evaluator& run, const ElementAccess& expression) {
  ElementKey key;
  if (expression.key)
    key.first = run.operand(*expression.key);
  if (expression.rangeEnd)
    key.last = run.operand(*expression.rangeEnd);
  return key;
}

Value evaluateElement(Evaluator& run, const ElementAccess& expression, Mode mode) {
  // Before the container, which these forms don't have.
  if (auto special = specialElement(run, expression))
    return std::move(*special);
  const Value container = run.containerOf(expression.container);
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return specifierElement(run, *specifier, expression, mode);
  return elementOf(run, container, expression);
}

Value elementOf(Evaluator& run, const Value& given, const ElementAccess& expression) {
  // A property of an object is read; what it answers with may be an object again, which is then asked for the element.
  const Value container = run.plain(given);
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return specifierElement(run, *specifier, expression, Mode::value);
  if (const auto* text = container.get<Text>(); text && !expression.test && expression.form == Form::range &&
                                                isEnd(expression.key) && isEnd(expression.rangeEnd)) {
    const auto endOf = [&run](const Expression& end) {
      const auto& access = static_cast<const ElementAccess&>(end);
      return ElementPicker::End{access, keyOf(run, access)};
    };
    // In a statement of its own, so that the keys are evaluated in the order written.
    const ElementPicker::End from = endOf(*expression.key);
    return run.picker.pickBetween(*text, expression, from, endOf(*expression.rangeEnd));
  }
  const ElementKey key = keyOf(run, expression);
  if (!expression.test)
    return run.picker.pick(container, expression, key);
  std::vector<Value> passing;
  std::vector<Value> candidates = run.picker.candidates(container, expression, key);
  for (Value& element : candidates) {
    if (passes(run, element, *expression.test))
      passing.push_back(std::move(element));
  }
  return run.picker.pickFrom(passing, expression, key, container);
}

Value countElements(Evaluator& run, const ElementAccess& expression) {
  if (auto special = specialElement(run, expression))
    return countOf(run, *special);
  const Value container = run.plain(run.containerOf(expression.container));
  if (const auto* specifier = container.get<Value::SpecifierPointer>())
    return countOf(run, specifierElement(run, *specifier, expression, Mode::designation));
  if (const auto* text = container.get<Text>(); text && !expression.test && expression.form == Form::every) {
    if (const auto count = run.picker.countPieces(*text, expression.elementClass.code))
      return *count;
  }
  return countOf(run, elementOf(run, container, expression));
}

std::optional<std::pair<Value::ListPointer, std::size_t>> itemPlace(Evaluator& run, const Value& container,
                                                                    const ElementAccess& expression) {
  const auto* list = container.get<Value::ListPointer>();
  // Settled before any key is evaluated: on the way that callers take otherwise, the keys are evaluated, too.
  if (!list || expression.elementClass.code != codes::item || expression.test || expression.form == Form::every ||
      expression.form == Form::range)
    return {};
  return std::pair(*list, run.picker.position((*list)->items.size(), expression, keyOf(run, expression), container));
}

Value countOf(Evaluator& run, const Value& given) {
  const Value value = run.plain(given);
  if (const auto* object = objectIn(value))
    return run.sender.send(events::count, *object);
  if (const auto* list = value.get<Value::ListPointer>())
    return static_cast<std::int64_t>((*list)->items.size());
  if (const auto* record = value.get<Value::RecordPointer>())
    return static_cast<std::int64_t>((*record)->fields.size());
  if (const auto* text = value.get<Text>())
    return static_cast<std::int64_t>(run.picker.characters().count(*text));
  throw errors::notUnderstood(shortSourceForm(value), "count");
}

} // namespace tabwright::applescript
