#pragma once

#include "platform/DefaultsValue.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tabwright::platform {

/// Stored values by name. Most code reads and writes by a `DefaultsKey` and not through this.
class DefaultsReader {
public:
  virtual ~DefaultsReader() = default;

  /// The stored value; nothing when none was ever written. Never throws for what the machine refuses: the values last
  /// known hold then.
  [[nodiscard]] virtual std::optional<DefaultsValue> find(const std::string& name) const = 0;
};

/// The state that an update works on: as fresh as the store, with the update's own writes in it.
class DefaultsChange : public DefaultsReader {
public:
  virtual void set(const std::string& name, DefaultsValue value) = 0;
};

/// One read-change-write step. It depends on nothing but the state that it is given and what it holds by value, as it
/// may run more than once, later, and in another thread: whenever the state beneath it turns out to be another. It must
/// be short, must not throw and must not call the store.
using DefaultsUpdate = std::function<void(DefaultsChange& change)>;

/// Keeps an observer informed as long as it lives. Letting go of it waits for a callback that is under way in another
/// thread, and may be done from inside the callback.
using DefaultsObservation = std::shared_ptr<void>;

/// The settings of the user: a few values that outlive the process and are shared by all processes of this program.
///
///     const DefaultsKey<std::int64_t> count(defaults, "c41d07ab", 0);
///     count.update([](std::int64_t value) { return value + 1; });
///
/// Reading gives what any process wrote last. Each update is one step that no other update interrupts, in this process
/// or another. No operation reports an error: what can't be stored is logged, holds in memory, and is stored together
/// with the next update that can be. All operations may be called from any thread.
class UserDefaults : public DefaultsReader {
public:
  /// Changes the store, and returns when the change is on the disk or was given up. Waits at most a few seconds.
  /// Observers of changed values in this process have been called by then.
  virtual void update(DefaultsUpdate change) = 0;

  /// Changes the store for readers of this process at once, and on the disk a little later, from another thread: for
  /// callers that can't wait for a disk. A process that ends in order loses nothing of it, a killed one may.
  virtual void updateSoon(DefaultsUpdate change) = 0;

  /// Calls `callback` whenever the value under `name` has become another, whichever process changed it. It comes from
  /// the thread that changed the value or from one of the store's own; it must be short and must not throw. Several
  /// changes in a row may come as one call.
  [[nodiscard]] virtual DefaultsObservation observe(const std::string& name, std::function<void()> callback) = 0;
};

} // namespace tabwright::platform
