#pragma once

#include "scripting/browser/IndexedSnapshot.h"
#include "scripting/driver/BrowserDriver.h"
#include "scripting/model/EventScope.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace tabwright::scripting {

/// An event as both dictionaries of browsers see it: the driver, and one snapshot, taken when the event first needs it
/// and the same until the event is answered. Objects are windows (`first` is the 0-based position in the snapshot) and
/// tabs (`second` is the position in that window); a Safari document is its window's.
///
/// Lives on the stack of `handle`, for one thread. Throws DriverFailure where it asks the browser.
class BrowserScope : public EventScope {
public:
  /// All that it is given by reference outlives it. `isFrontmost` may be empty: the browser then counts as behind.
  BrowserScope(const ObjectModel& model, std::shared_ptr<applescript::ScriptableApplication> application,
               const applescript::AppleEventMessage& message, BrowserDriver& driver, SnapshotCache& cache,
               const std::function<bool()>& isFrontmost);

  [[nodiscard]] BrowserDriver& driver() const { return driver_; }
  /// Carries out a command within the event's limits; yields the command's number, or 0. A snapshot that the event has
  /// taken stays as it was.
  std::int64_t perform(const BrowserCommand& command) const { return driver_.perform(command, limits_); }
  /// The event's deadline, its stop, and whom to give notices.
  [[nodiscard]] const CallLimits& limits() const { return limits_; }
  /// Asks the desktop; false where it can't be asked.
  [[nodiscard]] bool isFrontmost() const { return isFrontmost_ && isFrontmost_(); }

  /// The browser is asked at most once for an event. The reference is good as long as the scope.
  [[nodiscard]] const IndexedSnapshot& snapshot();
  /// The window of an object of this event, be that the window, one of its tabs, or its document.
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
