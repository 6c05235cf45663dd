// A change is a function, not a value: it is applied anew to each state that turns up beneath it.
#include "platform/linux/PendingChanges.h"

#include "platform/Logger.h"

#include <exception>
#include <utility>

namespace tabwright::platform {
namespace {

const Logger changesLog("UserDefaults");

class DocumentChange final : public DefaultsChange {
public:
  explicit DocumentChange(PropertyListDocument& document) : document_(document) {}

  [[nodiscard]] std::optional<DefaultsValue> find(const std::string& name) const override {
    return document_.find(name);
  }
  void set(const std::string& name, DefaultsValue value) override {
    // As it would be read back, or every such text would differ from what is stored.
    value = PropertyListDocument::storable(std::move(value));
    const std::optional<DefaultsValue> old = document_.find(name);
    // A value that makes no difference isn't written, and wakes nobody.
    if (old == value)
      return;
    document_.set(name, value);
    applied.isChanged = true;
    applied.replacesOtherType |= old && old->index() != value.index();
  }

  AppliedChanges applied;

private:
  PropertyListDocument& document_;
};

} // namespace

AppliedChanges applyChange(const DefaultsUpdate& change, PropertyListDocument& document) {
  DocumentChange documentChange(document);
  try {
    change(documentChange);
  } catch (const std::exception& error) {
    // One that throws is a fault of its maker; the others must reach the disk all the same.
    changesLog.error("A change of the settings failed: {}", error.what());
  }
  return documentChange.applied;
}

bool PendingChanges::add(DefaultsUpdate change) {
  changes_.push_back(std::move(change));
  if (changes_.size() <= limit)
    return true;
  changes_.pop_front();
  ++begin_;
  return false;
}

void PendingChanges::removeUpTo(std::size_t end) {
  for (; begin_ < end && !changes_.empty(); ++begin_)
    changes_.pop_front();
}

AppliedChanges PendingChanges::applyTo(PropertyListDocument& document) const {
  AppliedChanges all;
  for (const DefaultsUpdate& change : changes_) {
    const AppliedChanges applied = applyChange(change, document);
    all.isChanged |= applied.isChanged;
    all.replacesOtherType |= applied.replacesOtherType;
  }
  return all;
}

} // namespace tabwright::platform
