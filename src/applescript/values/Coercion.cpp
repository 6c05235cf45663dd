// One function per target, and a switch over the codes of classes that names them. A value in a list of one is taken
// out last, just before the error: for numbers, booleans and the classes that only a value of their own has. A text
// joins its list, however long it is, and records, dates and constants are taken out of none.
#include "applescript/values/Coercion.h"

#include "applescript/values/ClassNames.h"
#include "applescript/values/Dates.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"
#include "applescript/values/TextComparison.h"
#include "applescript/values/Traversal.h"

#include <cmath>

namespace tabwright::applescript {

namespace {

// The item of a list of one, which stands for it; null for anything else.
const Value* onlyItem(const Value& value) {
  const auto* list = value.get<Value::ListPointer>();
  return list && (*list)->items.size() == 1 ? &(*list)->items.front() : nullptr;
}

void appendText(const Value& original, const Value& value, std::string& text, const CoercionContext& context);

struct TextVisitor {
  const Value& original; ///< what the error names: the whole, also when one of its items is at fault
  std::string& text;
  const CoercionContext& context;

  void operator()(Value::MissingValue) const { text += "missing value"; }
  void operator()(Value::Null) const { text += "null"; }
  void operator()(bool value) const { text += value ? "true" : "false"; }
  void operator()(std::int64_t value) const { text += std::to_string(value); }
  void operator()(double value) const { text += realText(value); }
  void operator()(const Text& value) const { text += value.utf8(); }
  void operator()(Date value) const { text += dateText(value); }
  void operator()(const Value::ClassPointer& value) const { text += classWords(*value); }
  void operator()(const Value::EnumeratorPointer& value) const { text += value->words; }
  void operator()(const Value::ListPointer& list) const {
    const Traversal traversal;
    bool first = true;
    for (const Value& item : list->items) {
      if (!std::exchange(first, false))
        text += context.textItemDelimiter;
      appendText(original, item, text, context);
    }
  }
  void operator()(const Value::ReferencePointer& reference) const {
    const Traversal traversal;
    appendText(original, lookThrough(reference), text, context);
  }
  void operator()(const Value::ForeignPointer& foreign) const {
    const auto unwrapped = foreign->unwrapped();
    if (!unwrapped || unwrapped->is<Value::ForeignPointer>())
      throw errors::cannotMake(original, "text");
    appendText(original, *unwrapped, text, context);
  }
  void operator()(const Value::RecordPointer&) const { throw errors::cannotMake(original, "text"); }
  void operator()(const Value::SpecifierPointer&) const { throw errors::cannotMake(original, "text"); }
  void operator()(const Value::ScriptPointer&) const { throw errors::cannotMake(original, "text"); }
  void operator()(Value::Nothing) const { throw errors::noResult(); }
};

void appendText(const Value& original, const Value& value, std::string& text, const CoercionContext& context) {
  value.visit(TextVisitor{original, text, context});
  // A few lists that share their items can unfold to any size.
  if (text.size() > (std::size_t{1} << 28))
    throw errors::outOfMemory();
}

Value constantOf(const Value& value, const ClassName& type) {
  if (value.is<Value::EnumeratorPointer>())
    return value;
  throw errors::cannotMake(value, type.words);
}

Value recordOf(const Value& value) {
  if (value.is<Value::RecordPointer>())
    return value;
  if (const auto* list = value.get<Value::ListPointer>(); list && (*list)->items.empty())
    return std::make_shared<Record>();
  else if (list && (*list)->items.size() == 1 && (*list)->items.front().is<Value::RecordPointer>())
    return (*list)->items.front();
  throw errors::cannotMake(value, "record");
}

Value dateOf(const Value& value) {
  if (value.is<Date>())
    return value;
  if (const auto* list = value.get<Value::ListPointer>();
      list && (*list)->items.size() == 1 && (*list)->items.front().is<Date>())
    return (*list)->items.front();
  if (const std::string* text = value.text()) {
    // Coercions know no clock: a time alone, or a day without a year, is in 2001 here.
    if (const auto date = dateFromText(*text, Date{}))
      return *date;
  }
  throw errors::cannotMake(value, "date");
}

} // namespace

Value plainValue(const Value& value) {
  if (value.is<Value::ReferencePointer>())
    return plainValue(lookThrough(value)); // which leads to no other reference
  if (const auto* foreign = value.get<Value::ForeignPointer>()) {
    if (auto unwrapped = (*foreign)->unwrapped())
      return std::move(*unwrapped);
  }
  return value;
}

std::string textOf(const Value& value, const CoercionContext& context) {
  std::string text;
  appendText(value, value, text, context);
  return text;
}

Value numberOf(const Value& value) {
  if (asReal(value))
    return value;
  if (const auto* boolean = value.get<bool>())
    return *boolean ? 1 : 0;
  if (const std::string* text = value.text()) {
    if (const auto number = numberFromText(*text))
      return *number;
  } else if (const auto* constant = value.get<Value::EnumeratorPointer>()) {
    if (const auto month = monthOf(**constant))
      return *month;
    if (const auto weekday = weekdayOf(**constant))
      return *weekday;
  } else if (value.is<Value::ReferencePointer>() || value.is<Value::ForeignPointer>()) {
    const Value plain = plainValue(value);
    // One without a form in the language would come by here without end.
    if (!plain.is<Value::ForeignPointer>())
      return numberOf(plain);
  } else if (const Value* item = onlyItem(value)) {
    const Traversal traversal;
    return numberOf(*item);
  }
  throw errors::cannotMake(value, "number");
}

std::int64_t integerOf(const Value& value) {
  if (const auto* integer = value.get<std::int64_t>())
    return *integer;
  Value number;
  try {
    number = numberOf(value);
  } catch (const ScriptError& error) {
    // The sentence names the class that was asked for.
    if (error.number() == errorNumber::cannotMake)
      throw errors::cannotMake(value, "integer");
    throw;
  }
  if (const auto* integer = number.get<std::int64_t>())
    return *integer;
  const double whole = std::round(*number.get<double>());
  // Asked this way round, since it has to refuse NaN as well.
  if (!(std::abs(whole) < 9223372036854775808.0))
    throw errors::cannotMake(value, "integer");
  return static_cast<std::int64_t>(whole);
}

double realOf(const Value& value) {
  return *asReal(numberOf(value));
}

bool booleanOf(const Value& value) {
  if (const auto* boolean = value.get<bool>())
    return *boolean;
  const Value plain = plainValue(value);
  if (const auto* boolean = plain.get<bool>())
    return *boolean;
  if (const auto* integer = plain.get<std::int64_t>())
    return *integer != 0;
  if (const auto* real = plain.get<double>())
    return *real != 0;
  if (const std::string* text = plain.text()) {
    for (const bool boolean : {true, false}) {
      if (textEquals(*text, boolean ? "true" : "false", {}))
        return boolean;
    }
  } else if (const Value* item = onlyItem(plain)) {
    const Traversal traversal;
    return booleanOf(*item);
  }
  throw errors::cannotMake(value, "boolean");
}

Value::ListPointer listOf(const Value& value) {
  const Value plain = plainValue(value);
  if (const auto* list = plain.get<Value::ListPointer>())
    return *list;
  auto list = std::make_shared<List>();
  if (const auto* record = plain.get<Value::RecordPointer>()) {
    for (const auto& field : (*record)->fields)
      list->items.push_back(field.second);
  } else {
    list->items.push_back(plain);
  }
  return list;
}

Value coerce(const Value& value, const ClassName& type, const CoercionContext& context) {
  Value plain = plainValue(value);
  switch (type.code) {
  case codes::text:
  case codes::string:
  case codes::unicodeText:
    if (plain.is<Text>())
      return plain;
    // Scripts try this on records to tell them apart, a thousand times over: the error is thrown from here, since each
    // frame that an exception passes costs about a microsecond.
    if (plain.is<Value::RecordPointer>())
      throw errors::cannotMake(plain, "text");
    return textOf(plain, context);
  case codes::integer:
    return integerOf(plain);
  case codes::real:
    return realOf(plain);
  case codes::number:
    return numberOf(plain);
  case codes::boolean:
    return booleanOf(plain);
  case codes::list:
    return listOf(plain);
  case codes::record:
    return recordOf(plain);
  case codes::date:
    return dateOf(plain);
  case codes::constant:
    return constantOf(plain, type);
  // Everything is an item, so nothing has to change.
  case codes::anything:
  case codes::item:
    return plain;
  default:
    if (isKindOf(plain, type.code))
      return plain;
    // `x as window` of what names one already asks no application.
    if (const auto* specifier = plain.get<Value::SpecifierPointer>();
        specifier && (*specifier)->desiredClass == type.code)
      return plain;
    if (const Value* item = onlyItem(plain)) {
      const Traversal traversal;
      return coerce(*item, type, context);
    }
    throw errors::cannotMake(value, classWords(type));
  }
}

} // namespace tabwright::applescript
