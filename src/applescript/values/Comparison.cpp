#include "applescript/values/Comparison.h"

#include "applescript/events/ObjectSpecifier.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Numbers.h"
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

struct EqualVisitor {
  const TextAttributes& attributes;

  template <class Left, class Right>
  bool operator()(const Left&, const Right&) const {
    return false;
  }
  bool operator()(Value::MissingValue, Value::MissingValue) const { return true; }
  bool operator()(Value::Null, Value::Null) const { return true; }
  bool operator()(bool left, bool right) const { return left == right; }
  bool operator()(std::int64_t left, std::int64_t right) const { return left == right; }
  bool operator()(double left, double right) const { return left == right; }
  bool operator()(std::int64_t left, double right) const { return static_cast<double>(left) == right; }
  bool operator()(double left, std::int64_t right) const { return left == static_cast<double>(right); }
  bool operator()(const Text& left, const Text& right) const {
    return left.isSameObject(right) || textEquals(left.utf8(), right.utf8(), attributes);
  }
  bool operator()(Date left, Date right) const { return left.seconds == right.seconds; }
  bool operator()(const Value::ClassPointer& left, const Value::ClassPointer& right) const {
    return sameClass(left->code, right->code);
  }
  bool operator()(const Value::EnumeratorPointer& left, const Value::EnumeratorPointer& right) const {
    return left->code == right->code;
  }
  bool operator()(const Value::ListPointer& left, const Value::ListPointer& right) const {
    return left == right || equalLists(*left, *right, attributes);
  }
  bool operator()(const Value::RecordPointer& left, const Value::RecordPointer& right) const {
    return left == right || (left->fields.size() == right->fields.size() && hasFields(*left, *right, attributes));
  }
  bool operator()(const Value::SpecifierPointer& left, const Value::SpecifierPointer& right) const {
    return sameSpecifier(*left, *right);
  }
  bool operator()(const Value::ScriptPointer& left, const Value::ScriptPointer& right) const { return left == right; }
  bool operator()(const Value::ForeignPointer& left, const Value::ForeignPointer& right) const { return left == right; }
};

std::vector<Value> itemsOf(const Value& value) {
  if (const auto* list = value.get<Value::ListPointer>())
    return (*list)->items;
  return {value};
}

bool isContainer(const Value& value) {
  return value.is<Value::ListPointer>() || value.is<Value::RecordPointer>() || value.text() ||
         asReal(value).has_value() || value.is<bool>() || value.is<Date>();
}

enum class Place { anywhere, start, end };

bool holdsItems(const Value& whole, const Value& part, Place place, const TextAttributes& attributes) {
  const std::vector<Value>& items = (*whole.get<Value::ListPointer>())->items;
  const std::vector<Value> wanted = itemsOf(part);
  const auto same = [&](const Value& a, const Value& b) { return equalItems(a, b, attributes); };
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

} // namespace

bool equalValues(const Value& left, const Value& right, const TextAttributes& attributes) {
  return std::visit(EqualVisitor{attributes}, left.storage(), right.storage());
}

int compareValues(const Value& left, const Value& right, const TextAttributes& attributes) {
  if (const auto* text = left.text())
    return right.text() ? compareText(*text, *right.text(), attributes) : compareText(*text, textOf(right), attributes);
  if (const auto* date = left.get<Date>()) {
    const auto* other = right.get<Date>();
    if (!other)
      throw errors::cannotMake(right, "date");
    return order(date->seconds, other->seconds);
  }
  if (const auto* integer = left.get<std::int64_t>()) {
    if (const auto* other = right.get<std::int64_t>())
      return order(*integer, *other);
  }
  if (asReal(left))
    return order(*asReal(left), *asReal(numberOf(right)));
  throw errors::cannotMake(left, "number");
}

bool valueContains(const Value& whole, const Value& part, const TextAttributes& attributes) {
  return holds(whole, part, Place::anywhere, attributes);
}

bool valueBeginsWith(const Value& whole, const Value& part, const TextAttributes& attributes) {
  return holds(whole, part, Place::start, attributes);
}

bool valueEndsWith(const Value& whole, const Value& part, const TextAttributes& attributes) {
  return holds(whole, part, Place::end, attributes);
}

} // namespace tabwright::applescript
