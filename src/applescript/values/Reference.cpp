// Places are read anew each time they are looked through. Deep looking-through first checks whether anything has to
// change, so that the usual value, which holds no reference, is shared and not copied.
#include "applescript/values/Reference.h"

#include "applescript/values/Errors.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/SourceForm.h"
#include "applescript/values/Traversal.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::applescript {

Value ItemReference::value() const {
  if (index_ >= list_->items.size())
    throw errors::cannotGet(description());
  return list_->items[index_];
}

void ItemReference::assign(Value value) const {
  if (index_ >= list_->items.size())
    throw errors::cannotSet(description(), value);
  list_->items[index_] = std::move(value);
}

std::string ItemReference::description() const {
  return fmt::format("item {} of {}", index_ + 1, shortSourceForm(Value(list_)));
}

bool ItemReference::isSamePlace(const Reference& other) const {
  // Each round of a loop makes a reference of its own, so one place may have several.
  const auto* item = dynamic_cast<const ItemReference*>(&other);
  return item && item->list_ == list_ && item->index_ == index_;
}

Value::ReferencePointer ItemReference::asParameter(const Value::ReferencePointer& self) const {
  // Handed on from one handler to the next, it is that already.
  if (comparison_ == Comparison::byValue)
    return self;
  // A second one, since that of the loop's variable goes on comparing by place.
  return std::make_shared<const ItemReference>(list_, index_, Comparison::byValue);
}

Value VariableReference::value() const {
  if (value_.isNothing())
    throw errors::undefinedVariable(name_);
  return value_;
}

Value BridgeReference::value() const {
  if (!found_)
    found_ = find_();
  return *found_;
}

void BridgeReference::assign(Value value) const {
  throw errors::cannotSet(description(), value);
}

std::string BridgeReference::description() const {
  return fmt::format("{} of current application", name_);
}

Value lookThrough(Value value) {
  const auto* reference = value.get<Value::ReferencePointer>();
  if (!reference)
    return value;
  Value found = (*reference)->value();
  // A reference may lead to another one; a ring of them leads nowhere.
  for (int hops = 0; const auto* next = found.get<Value::ReferencePointer>(); ++hops) {
    if (hops == 100)
      throw errors::stackOverflow();
    const Value::ReferencePointer hop = *next;
    found = hop->value();
  }
  return found;
}

namespace {

bool needsLooking(const Value& value, ForeignObjects foreignObjects) {
  if (value.is<Value::ReferencePointer>())
    return true;
  if (value.is<Value::ForeignPointer>())
    return foreignObjects == ForeignObjects::unwrapped;
  if (const auto* list = value.get<Value::ListPointer>()) {
    const Traversal traversal;
    return std::ranges::any_of((*list)->items, [&](const Value& item) { return needsLooking(item, foreignObjects); });
  }
  if (const auto* record = value.get<Value::RecordPointer>()) {
    const Traversal traversal;
    return std::ranges::any_of((*record)->fields,
                               [&](const auto& field) { return needsLooking(field.second, foreignObjects); });
  }
  return false;
}

Value looked(Value value, ForeignObjects foreignObjects) {
  if (value.is<Value::ReferencePointer>()) {
    // A reference may lead to a list that holds the reference.
    const Traversal traversal;
    return looked(lookThrough(std::move(value)), foreignObjects);
  }
  if (const auto* foreign = value.get<Value::ForeignPointer>()) {
    if (foreignObjects == ForeignObjects::kept)
      return value;
    return (*foreign)->unwrapped().value_or(value);
  }
  return rebuilt(value, [&](const Value& part) { return looked(part, foreignObjects); }).value_or(value);
}

} // namespace

Value lookThroughDeep(Value value, ForeignObjects foreignObjects) {
  if (needsLooking(value, foreignObjects))
    return looked(std::move(value), foreignObjects);
  return value;
}

} // namespace tabwright::applescript
