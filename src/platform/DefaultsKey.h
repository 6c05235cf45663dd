#pragma once

#include "platform/Logger.h"
#include "platform/UserDefaults.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace tabwright::platform {

/// The way in which a type is kept in the store: as itself, for the types of `DefaultsValue`. Other types specialise
/// this with the same two functions; `from` gives nothing for a value that isn't of the type.
template <class T>
struct DefaultsCoding {
  static std::optional<T> from(const DefaultsValue& value) {
    if (const T* found = std::get_if<T>(&value))
      return *found;
    return std::nullopt;
  }
  static DefaultsValue value(T value) { return value; }
};

/// A whole number counts as a double too: tools that write property lists drop the fraction ".0".
template <>
struct DefaultsCoding<double> {
  static std::optional<double> from(const DefaultsValue& value) {
    if (const auto* number = std::get_if<double>(&value))
      return *number;
    if (const auto* whole = std::get_if<std::int64_t>(&value))
      return static_cast<double>(*whole);
    return std::nullopt;
  }
  static DefaultsValue value(double value) { return value; }
};

/// One setting: name, type, default and store. Reading gives the default as long as nothing was written, and writes
/// nothing. A stored value of another type is logged once and read as the default; other keys don't suffer from it.
///
/// Safe to use from any thread. The store outlives its keys.
template <class T>
class DefaultsKey {
public:
  DefaultsKey(UserDefaults& store, std::string name, T defaultValue)
      : store_(store), name_(std::move(name)), defaultValue_(std::move(defaultValue)) {}

  [[nodiscard]] const std::string& name() const noexcept { return name_; }

  [[nodiscard]] T get() const { return get(store_); }
  void set(T value) const {
    store_.update([name = name_, value = DefaultsCoding<T>::value(std::move(value))](DefaultsChange& change) {
      change.set(name, value);
    });
  }
  /// Sets what `next` makes of the present value, in one step. `next` obeys the rules of a `DefaultsUpdate`.
  void update(std::function<T(T)> next) const { store_.update(updating(std::move(next))); }
  /// The same by `UserDefaults::updateSoon`.
  void updateSoon(std::function<T(T)> next) const { store_.updateSoon(updating(std::move(next))); }

  /// For updates of several keys in one step.
  [[nodiscard]] T get(const DefaultsReader& reader) const {
    const std::optional<DefaultsValue> stored = reader.find(name_);
    if (!stored)
      return defaultValue_;
    if (std::optional<T> value = DefaultsCoding<T>::from(*stored))
      return *std::move(value);
    if (!isMismatchLogged_->exchange(true))
      Logger("UserDefaults").error("The stored value of {} is of another type: its default holds", name_);
    return defaultValue_;
  }
  void set(DefaultsChange& change, const T& value) const { change.set(name_, DefaultsCoding<T>::value(value)); }

  [[nodiscard]] DefaultsObservation observe(std::function<void()> callback) const {
    return store_.observe(name_, std::move(callback));
  }

private:
  // A copy of the key goes along, since a change may be kept for longer than the key lives.
  [[nodiscard]] DefaultsUpdate updating(std::function<T(T)> next) const {
    return [key = *this, next = std::move(next)](DefaultsChange& change) { key.set(change, next(key.get(change))); };
  }

  UserDefaults& store_;
  std::string name_;
  T defaultValue_;
  std::shared_ptr<std::atomic<bool>> isMismatchLogged_ = std::make_shared<std::atomic<bool>>(false);
};

} // namespace tabwright::platform
