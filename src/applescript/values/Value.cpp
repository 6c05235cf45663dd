// Copies share; the two things that walk a value here, copying it deeply and taking it down, mind that a script can
// nest lists without bound: the copy is bounded, and the destructors hand nested values to a queue instead of
// recursing.
#include "applescript/values/Value.h"

#include "applescript/values/Names.h"
#include "applescript/values/Traversal.h"

namespace tabwright::applescript {

namespace {

// Values whose holders are being destroyed. The outermost destructor empties it, so the depth of nesting costs memory
// and no stack.
thread_local std::vector<Value>* dying = nullptr;

// Kinds that further values hang from. Specifiers take down their own chains, in a loop.
bool holdsMore(const Value& value) {
  return value.is<Value::ListPointer>() || value.is<Value::RecordPointer>() || value.is<Value::ReferencePointer>() ||
         value.is<Value::ScriptPointer>();
}

} // namespace

void release(Value&& value) noexcept {
  if (!holdsMore(value))
    return;
  if (dying) {
    dying->push_back(std::move(value));
    return;
  }
  std::vector<Value> queue;
  dying = &queue;
  queue.push_back(std::move(value));
  // Ending a value may put those that only it held behind the others.
  while (!queue.empty()) {
    const Value last = std::move(queue.back());
    queue.pop_back();
  }
  dying = nullptr;
}

List::~List() {
  for (Value& item : items)
    release(std::move(item));
}

Record::~Record() {
  for (auto& field : fields)
    release(std::move(field.second));
}

Value Value::list(std::vector<Value> items) {
  return std::make_shared<List>(std::move(items));
}

Value Value::deepCopy() const {
  return rebuilt(*this, [](const Value& part) { return part.deepCopy(); }).value_or(*this);
}

bool Label::sameAs(const Label& other) const {
  // Code 0 is that of all labels of the script's own, and says nothing.
  return (code != 0 && code == other.code) || sameName(name, other.name);
}

Value* Record::find(const Label& label) {
  return const_cast<Value*>(std::as_const(*this).find(label));
}

const Value* Record::find(const Label& label) const {
  for (const auto& [own, value] : fields) {
    if (own.sameAs(label))
      return &value;
  }
  return nullptr;
}

void Record::set(const Label& label, Value value) {
  if (Value* field = find(label))
    *field = std::move(value);
  else
    fields.emplace_back(label, std::move(value));
}

} // namespace tabwright::applescript
