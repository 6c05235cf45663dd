#pragma once

#include "platform/UserDefaults.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// Settings that last as long as the test, and count what is written. For one thread.
class MemoryUserDefaults final : public platform::UserDefaults {
public:
  std::map<std::string, platform::DefaultsValue> stored;
  std::vector<std::string> writes; ///< the name of each write, in order

  [[nodiscard]] std::optional<platform::DefaultsValue> find(const std::string& name) const override {
    const auto entry = stored.find(name);
    return entry == stored.end() ? std::nullopt : std::optional(entry->second);
  }

  void update(platform::DefaultsUpdate change) override {
    Change step(*this);
    change(step);
    for (const auto& [name, callback] : std::exchange(step.told, {}))
      callback();
  }
  void updateSoon(platform::DefaultsUpdate change) override { update(std::move(change)); }

  [[nodiscard]] platform::DefaultsObservation observe(const std::string& name,
                                                      std::function<void()> callback) override {
    auto observer = std::make_shared<Observer>(name, std::move(callback));
    observers_.push_back(observer);
    return observer;
  }

private:
  using Observer = std::pair<std::string, std::function<void()>>;

  struct Change final : platform::DefaultsChange {
    explicit Change(MemoryUserDefaults& owner) : store(owner) {}
    [[nodiscard]] std::optional<platform::DefaultsValue> find(const std::string& name) const override {
      return store.find(name);
    }
    void set(const std::string& name, platform::DefaultsValue value) override {
      store.writes.push_back(name);
      const auto old = std::exchange(store.stored[name], value);
      for (const std::weak_ptr<Observer>& entry : store.observers_) {
        if (const auto observer = entry.lock(); observer && observer->first == name && old != value)
          told.push_back(*observer);
      }
    }
    MemoryUserDefaults& store;
    std::vector<Observer> told;
  };

  std::vector<std::weak_ptr<Observer>> observers_;
};

} // namespace tabwright::testsupport
