// Equality visits the left value and asks the right one for the same kind; only integers and reals meet. Order goes by
// the kind of the left value, to which the right one is coerced, but for dates. Containment is by rows of items in
// lists, by fields in records, and in texts, numbers, booleans and dates by their texts; anything else holds what it
// equals. Whatever walks into lists and records counts its levels (Traversal), since a script can nest them without
// end.
#include "applescript/values/Comparison.h"

#include "applescript/values/ClassNames.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Traversal.h"

#include <algorithm>

namespace tabwright::applescript {

namespace {

// Compares two items without copying them in the usual case, in which there is nothing to look through.
bool equalItems(const Value& left, const Value& right, const TextAttributes& attributes) {
  const auto isPlain = [](const Value& value) {
    return !value.is<Value::ReferencePointer>() && !value.is<Value::ForeignPointer>();
  };
  if (isPlain(left) && isPlain(right))
    return equalValues(left, right, attributes);
  return equalValues(plainValue(left), plainValue(right), attributes);
}

bool equalLists(const List& left, const List& right, const TextAttributes& attributes) {
  const Traversal traversal;
  return left.items.size() == right.items.size() &&
         std::ranges::equal(left.items, right.items,
                            [&](const Value& a, const Value& b) { return equalItems(a, b, attributes); });
}

bool hasFields(const Record& whole, const Record& part, const TextAttributes& attributes) {
  const Traversal traversal;
  return std::ranges::all_of(part.fields, [&](const auto& field) {
    const Value* own = whole.find(field.first);
    return own && equalItems(*own, field.second, attributes);
  });
}

/// A value equals `right` when it is of the same kind, and the same in that kind's sense.
struct EqualVisitor {
  const Value& right;
  const TextAttributes& attributes;

  template <class Left>
  bool operator()(const Left& left) const {
    const auto* other = right.get<Left>();
    return other && same(left, *other);
  }
  bool operator()(std::int64_t left) const {
    const auto* integer = right.get<std::int64_t>(); // compared as a real it would lose digits
    return integer ? left == *integer : (*this)(static_cast<double>(left));
  }
  bool operator()(double left) const {
    const std::optional<double> number = asReal(right);
    return number && left == *number;
  }

private:
  static bool same(Value::MissingValue, Value::MissingValue) { return true; }
  static bool same(Value::Null, Value::Null) { return true; }
  static bool same(Value::Nothing, Value::Nothing) { return false; }
  static bool same(bool left, bool right) { return left == right; }
  static bool same(Date left, Date right) { return left.seconds == right.seconds; }
  [[nodiscard]] bool same(const Text& left, const Text& right) const {
    // A text equals its copies by any attributes, at no cost.
    return left.isSameObject(right) || textEquals(left.utf8(), right.utf8(), attributes);
  }
  static bool same(const Value::ClassPointer& left, const Value::ClassPointer& right) {
    return sameClass(left->code, right->code);
  }
  static bool same(const Value::EnumeratorPointer& left, const Value::EnumeratorPointer& right) {
    return left->code == right->code;
  }
  [[nodiscard]] bool same(const Value::ListPointer& left, const Value::ListPointer& right) const {
    return left == right || equalLists(*left, *right, attributes);
  }
  [[nodiscard]] bool same(const Value::RecordPointer& left, const Value::RecordPointer& right) const {
    // Labels are unique, so as many fields that are all found are the same ones.
    return left == right || (left->fields.size() == right->fields.size() && hasFields(*left, *right, attributes));
  }
  static bool same(const Value::SpecifierPointer& left, const Value::SpecifierPointer& right) {
    return sameSpecifier(*left, *right);
  }
  static bool same(const Value::ScriptPointer& left, const Value::ScriptPointer& right) { return left == right; }
  static bool same(const Value::ForeignPointer& left, const Value::ForeignPointer& right) { return left == right; }
  static bool same(const Value::ReferencePointer&, const Value::ReferencePointer&) { return false; } // looked through
};

std::vector<Value> itemsOf(const Value& value) {
  if (const auto* list = value.get<Value::ListPointer>())
    return (*list)->items;
  return {value};
}

// Values whose texts may be looked into: `12 contains 2`. Constants, classes and objects only equal each other.
bool isContainer(const Value& value) {
  return value.is<Value::ListPointer>() || value.is<Value::RecordPointer>() || value.text() ||
         asReal(value).has_value() || value.is<bool>() || value.is<Date>();
}

enum class Place { anywhere, start, end };

bool holdsItems(const Value& whole, const Value& part, Place place, const TextAttributes& attributes) {
  const std::vector<Value>& items = (*whole.get<Value::ListPointer>())->items;
  const std::vector<Value> wanted = itemsOf(part);
  const auto same = [&](const Value& a, const Value& b) { return equalItems(a, b, attributes); };
  // Settled first: std::equal reads as many items as are wanted.
  if (wanted.size() > items.size())
    return false;
  switch (place) {
  case Place::anywhere:
    return wanted.empty() || !std::ranges::search(items, wanted, same).empty();
  case Place::start:
    return std::equal(wanted.begin(), wanted.end(), items.begin(), same);
  case Place::end:
    return std::equal(wanted.rbegin(), wanted.rend(), items.rbegin(), same);
  }
  return false;
}

bool holds(const Value& whole, const Value& part, Place place, const TextAttributes& attributes) {
  if (whole.is<Value::ListPointer>())
    return holdsItems(whole, part, place, attributes);
  if (const auto* record = whole.get<Value::RecordPointer>(); record && place == Place::anywhere) {
    const auto* fields = part.get<Value::RecordPointer>();
    if (!fields)
      throw errors::cannotMake(part, "record");
    return hasFields(**record, **fields, attributes);
  }
  // A list in something that is none: only one of a single item can be in it.
  if (const auto* list = part.get<Value::ListPointer>())
    return (*list)->items.size() == 1 && holds(whole, plainValue((*list)->items.front()), place, attributes);
  if (!isContainer(whole) || !isContainer(part))
    return equalItems(whole, part, attributes);
  const std::string wholeText = textOf(whole);
  const std::string partText = textOf(part);
  switch (place) {
  case Place::anywhere:
    return textContains(wholeText, partText, attributes);
  case Place::start:
    return textBeginsWith(wholeText, partText, attributes);
  case Place::end:
    return textEndsWith(wholeText, partText, attributes);
  }
  return false;
}

template <class Number>
int order(Number left, Number right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

/// Negative, 0 or positive.
int order(const Value& left, const Value& right, const TextAttributes& attributes) {
  if (const auto* text = left.text())
    return right.text() ? compareText(*text, *right.text(), attributes) : compareText(*text, textOf(right), attributes);
  if (const auto* date = left.get<Date>()) {
    const auto* other = right.get<Date>();
    if (!other)
      throw errors::cannotMake(right, "date");
    return order(date->seconds, other->seconds);
  }
  if (const auto* integer = left.get<std::int64_t>()) {
    // Two integers aren't compared as reals, which would lose digits.
    if (const auto* other = right.get<std::int64_t>())
      return order(*integer, *other);
  }
  if (asReal(left))
    return order(*asReal(left), *asReal(numberOf(right)));
  throw errors::cannotMake(left, "number");
}

} // namespace

bool equalValues(const Value& left, const Value& right, const TextAttributes& attributes) {
  return left.visit(EqualVisitor{right, attributes});
}

bool compare(TestOperator comparison, const Value& left, const Value& right, const TextAttributes& attributes) {
  switch (comparison) {
  case TestOperator::equals:
    return equalValues(left, right, attributes);
  case TestOperator::greaterThan:
    return order(left, right, attributes) > 0;
  case TestOperator::atLeast:
    return order(left, right, attributes) >= 0;
  case TestOperator::lessThan:
    return order(left, right, attributes) < 0;
  case TestOperator::atMost:
    return order(left, right, attributes) <= 0;
  case TestOperator::beginsWith:
    return holds(left, right, Place::start, attributes);
  case TestOperator::endsWith:
    return holds(left, right, Place::end, attributes);
  case TestOperator::contains:
    return holds(left, right, Place::anywhere, attributes);
  case TestOperator::isContainedBy:
    return holds(right, left, Place::anywhere, attributes);
  }
  return false;
}

} // namespace tabwright::applescript
