#pragma once

#include "platform/UserDefaults.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::platform {

/// Those who follow values of a store. Safe to use from any thread.
class DefaultsObservers {
public:
  /// Adds an observer of a value that is `value` now.
  [[nodiscard]] DefaultsObservation add(const std::string& name, std::optional<DefaultsValue> value,
                                        std::function<void()> callback);

  /// Calls all whose value in `reader` isn't the one that they last knew. `reader`'s lock, if it has one, must be free.
  void notify(const DefaultsReader& reader);

private:
  struct Observer {
    std::string name;
    std::recursive_mutex mutex; ///< guards what follows; recursive, as a callback may end its own observation
    std::optional<DefaultsValue> known;
    std::function<void()> callback; ///< empty when the observation has ended
  };

  std::mutex mutex_;
  std::vector<std::weak_ptr<Observer>> observers_;
};

} // namespace tabwright::platform
