// An observer's own lock is held while it is called: so its end waits for a call, and two threads that notice the same
// change call it once.
#include "platform/linux/DefaultsObservers.h"

#include <utility>

namespace tabwright::platform {

DefaultsObservation DefaultsObservers::add(const std::string& name, std::optional<DefaultsValue> value,
                                           std::function<void()> callback) {
  const auto observer = std::make_shared<Observer>(name, std::move(value), std::move(callback));
  {
    const MutexLock lock(mutex_);
    std::erase_if(observers_, [](const std::weak_ptr<Observer>& entry) { return entry.expired(); });
    observers_.push_back(observer);
  }
  // A handle of its own, whose end ends the observation even while `notify` holds the observer.
  return {observer.get(), [observer](void*) {
            const MutexLock lock(observer->mutex);
            observer->callback = {};
          }};
}

void DefaultsObservers::notify(const DefaultsReader& reader) {
  // A copy, since callbacks may add observers or end them.
  std::vector<std::shared_ptr<Observer>> observers;
  {
    const MutexLock lock(mutex_);
    for (const std::weak_ptr<Observer>& entry : observers_) {
      if (auto observer = entry.lock())
        observers.push_back(std::move(observer));
    }
  }
  for (const std::shared_ptr<Observer>& observer : observers) {
    const MutexLock lock(observer->mutex);
    // Read under the observer's lock, so that of two threads none reports a value that is older than the last one told.
    std::optional<DefaultsValue> value = reader.find(observer->name);
    if (!observer->callback || value == observer->known)
      continue;
    observer->known = std::move(value);
    const std::function<void()> callback = observer->callback; // it may end its own observation
    callback();
  }
}

} // namespace tabwright::platform
