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

/// The observers of a store's values. Safe to use from any thread.
class DefaultsObservers {
public:
  /// Adds an observer of a value that is `value` now.
  [[nodiscard]] DefaultsObservation add(const std::string& name, std::optional<DefaultsValue> value,
                                        std::function<void()> callback);

  /// Calls all whose value in `reader` isn't the one that they last knew. `reader`'s lock, if it has one, must be free.
  void notify(const DefaultsReader& reader);

private:
  struct Observer {
    Observer(std::string ofName, std::optional<DefaultsValue> value, std::function<void()> onChange)
        : name(std::move(ofName)), known(std::move(value)), callback(std::move(onChange)) {}

    const std::string name;
    RecursiveMutex mutex; ///< recursive, as a callback may end its own observation
    std::optional<DefaultsValue> known GUARDED_BY(mutex);
    std::function<void()> callback GUARDED_BY(mutex); ///< empty when the observation has ended
  };

  Mutex mutex_;
  std::vector<std::weak_ptr<Observer>> observers_ GUARDED_BY(mutex_);
};

} // namespace tabwright::platform
