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
///     template <>
///     struct DefaultsCoding<Theme> {
///       static std::optional<Theme> from(const DefaultsValue& value);
///       static DefaultsValue value(const Theme& theme);
///     };
struct DefaultsCoding {
  static std::optional<T> from(const DefaultsValue& value) {
    if (const T* found = std::get_if<T>(&value))
      return *found;
    return std::nullopt;
  }
  /// The form in which a value is stored. `from` takes it back.
  static DefaultsValue value(T value) { return value; }
};

/// A whole number counts as a double too: tools that write property lists drop the fraction ".0".
template <>
/// It comes back as the double that was written, since a fraction of zero says nothing.
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
///     const DefaultsKey<std::string> name(store, "3f9c21d4", "");
///     name.set(name.get() + "!");    // two steps: another process may write between them
///     name.update([](std::string old) { return old + "!"; });    // one step
class DefaultsKey {
public:
  /// Nothing is read or written yet. Two keys of one name see the same value.
  DefaultsKey(UserDefaults& store, std::string name, T defaultValue)
      : store_(store), name_(std::move(name)), defaultValue_(std::move(defaultValue)) {}

  /// The name in the store, which says nothing to users.
  [[nodiscard]] const std::string& name() const noexcept { return name_; }

  /// The stored value, else the default. Never throws for what the machine refuses, as `DefaultsReader::find` doesn't.
  [[nodiscard]] T get() const { return get(store_); }
  /// Stores the value, as `UserDefaults::update` does: it returns when the value is on the disk or that was given up.
  void set(T value) const {
    store_.update([name = name_, value = DefaultsCoding<T>::value(std::move(value))](DefaultsChange& change) {
      change.set(name, value);
    });
  }
  /// Sets what `next` makes of the present value, in one step. `next` obeys the rules of a `DefaultsUpdate`. Returns as
  /// `set` does.
  void update(std::function<T(T)> next) const { store_.update(updating(std::move(next))); }
  /// The same by `UserDefaults::updateSoon`.
  void updateSoon(std::function<T(T)> next) const { store_.updateSoon(updating(std::move(next))); }

  /// For updates of several keys in one step. Reads from the store, or within an update from its change, which holds
  /// what the update has set already.
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
  /// Sets the key within an update of several keys, for which `get(change)` reads.
  void set(DefaultsChange& change, const T& value) const { change.set(name_, DefaultsCoding<T>::value(value)); }

  /// Calls back whenever the key's stored value has become another, until the observation is let go of. See
  /// `UserDefaults::observe` for the thread.
  [[nodiscard]] DefaultsObservation observe(std::function<void()> callback) const {
    return store_.observe(name_, std::move(callback));
  }

private:
  // A copy of the key goes along, since a change may be kept for longer than the key lives. The change of the store
  // that `next` is for this key.
  [[nodiscard]] DefaultsUpdate updating(std::function<T(T)> next) const {
    return [key = *this, next = std::move(next)](DefaultsChange& change) { key.set(change, next(key.get(change))); };
  }

  /// Referred to, not owned.
  UserDefaults& store_;
  std::string name_;
  /// Given out as a copy, so nobody changes it.
  T defaultValue_;
  /// Copies of a key share it, so that each mismatch is logged once and not once for each copy.
  std::shared_ptr<std::atomic<bool>> isMismatchLogged_ = std::make_shared<std::atomic<bool>>(false);
};

} // namespace tabwright::platform
