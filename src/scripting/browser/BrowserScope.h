#pragma once

#include "scripting/browser/IndexedSnapshot.h"
#include "scripting/driver/BrowserDriver.h"
#include "scripting/model/EventScope.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace tabwright::scripting {

/// An event as both dictionaries of browsers see it: the driver, and one snapshot, taken when the event first needs
/// it and the same until the event is answered. Objects are windows (`first` is the 0-based position in the snapshot)
/// and tabs (`second` is the position in that window).
class BrowserScope : public EventScope {
public:
  BrowserScope(const ObjectModel& model, std::shared_ptr<applescript::ScriptableApplication> application,
               const applescript::AppleEventMessage& message, BrowserDriver& driver, SnapshotCache& cache,
               const std::function<bool()>& isFrontmost);

  [[nodiscard]] BrowserDriver& driver() const { return driver_; }
  /// Carries out a command within the event's limits.
  std::int64_t perform(const BrowserCommand& command) const { return driver_.perform(command, limits_); }
  [[nodiscard]] const CallLimits& limits() const { return limits_; }
  [[nodiscard]] bool isFrontmost() const { return isFrontmost_ && isFrontmost_(); }

  [[nodiscard]] const IndexedSnapshot& snapshot();
  [[nodiscard]] const WindowState& window(Object object);
  [[nodiscard]] const TabState& tab(Object object);

  /// The tab that the specifier names by its id and its window's, if it was there when the browser was last looked at.
  /// Costs no look, so a page job may be polled without one each: a tab that is gone since is told by the call on it.
  [[nodiscard]] std::optional<TabID> tabLastSeen(const applescript::Value& subject,
                                                 applescript::FourCharCode tabCode) const;

  /// Specifier by id of the window at a position; the last one made is kept, since tabs come window by window.
  [[nodiscard]] applescript::SpecifierPointer windowSpecifier(std::size_t position, applescript::Value id);

private:
  BrowserDriver& driver_;
  SnapshotCache& cache_;
  const std::function<bool()>& isFrontmost_;
  CallLimits limits_;
  std::shared_ptr<const IndexedSnapshot> snapshot_;
  std::optional<std::size_t> lastWindow_;
  applescript::SpecifierPointer lastSpecifier_;
};

/// The number that an id is, given as text or number; nothing when it can't be one.
[[nodiscard]] std::optional<std::int64_t> idNumber(const applescript::Value& value);

} // namespace tabwright::scripting
