#pragma once

#include "platform/Mutex.h"
#include "platform/UserDefaults.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::platform {

/// The observers of a store's values. Safe to use from any thread. It knows no store: whoever changes values calls
/// `notify`, and each observer is compared with the value that it last knew. So calling it too often costs time and
/// nothing else.
///
///     const auto observation = observers.add("c41d07ab", store.find("c41d07ab"), [] { refresh(); });
///     observers.notify(store);    // calls back if the value has become another
class DefaultsObservers {
public:
  /// Adds an observer of a value that is `value` now. The observation may outlive this. Its end waits for a call that
  /// is under way in another thread.
  [[nodiscard]] DefaultsObservation add(const std::string& name, std::optional<DefaultsValue> value,
                                        std::function<void()> callback);

  /// Calls all whose value in `reader` isn't the one that they last knew. `reader`'s lock, if it has one, must be free.
  /// Observers are called on this thread, one after the other, in the order in which they were added.
  void notify(const DefaultsReader& reader);

private:
  /// Shared by the observation and by a `notify` that is under way.
  struct Observer {
    Observer(std::string ofName, std::optional<DefaultsValue> value, std::function<void()> onChange)
        : name(std::move(ofName)), known(std::move(value)), callback(std::move(onChange)) {}

    const std::string name;
    RecursiveMutex mutex; ///< recursive, as a callback may end its own observation
    /// The value that it was last called for, or that was there when it was added.
    std::optional<DefaultsValue> known GUARDED_BY(mutex);
    std::function<void()> callback GUARDED_BY(mutex); ///< empty when the observation has ended
  };

  /// For the list alone; never held while an observer is called.
  Mutex mutex_;
  /// An ended one is dropped when the next is added.
  std::vector<std::weak_ptr<Observer>> observers_ GUARDED_BY(mutex_);
};

} // namespace tabwright::platform
