#pragma once

#include "applescript/values/Value.h"
#include "platform/Mutex.h"
#include "scripting/driver/BrowserDriver.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tabwright::scripting {

/// The place of a tab in a snapshot, by 0-based positions.
struct TabPosition {
  std::size_t window = 0;
  std::size_t tab = 0;
};

/// A snapshot with what makes each event on it cheap: positions by id, and ids as texts that answers share. A script
/// that walks 1,000 tabs sends thousands of events about one snapshot. Immutable, readable from any thread.
class IndexedSnapshot {
public:
  /// Not null. Costs a pass over all tabs.
  explicit IndexedSnapshot(std::shared_ptr<const BrowserSnapshot> snapshot);

  [[nodiscard]] const std::shared_ptr<const BrowserSnapshot>& snapshot() const { return snapshot_; }
  /// Front to back, as all positions here count them.
  [[nodiscard]] const std::vector<WindowState>& windows() const { return snapshot_->windows; }

  /// The 0-based position from the front; nothing for an id that isn't there.
  [[nodiscard]] std::optional<std::size_t> findWindow(WindowID id) const;
  /// The place of a tab; nothing for an id that isn't there.
  [[nodiscard]] std::optional<TabPosition> findTab(TabID id) const;
  /// Both positions must be in range.
  [[nodiscard]] const applescript::Text& windowIDText(std::size_t window) const { return windowTexts_[window]; }
  [[nodiscard]] const applescript::Text& tabIDText(TabPosition at) const { return tabTexts_[at.window][at.tab]; }

private:
  std::shared_ptr<const BrowserSnapshot> snapshot_;
  std::unordered_map<WindowID, std::size_t> windowPositions_;
  std::unordered_map<TabID, TabPosition> tabPositions_;
  /// Ids as texts, by position.
  std::vector<applescript::Text> windowTexts_;
  std::vector<std::vector<applescript::Text>> tabTexts_;
};

/// Keeps the index of the snapshot last seen, so that it is made once per snapshot. Safe from any thread.
class SnapshotCache {
public:
  /// The browser's windows as they are now, indexed. The same index for as long as the driver holds its snapshot.
  /// Throws DriverFailure.
  [[nodiscard]] std::shared_ptr<const IndexedSnapshot> take(BrowserDriver& driver, const CallLimits& limits);
  /// The one that was taken last, however old; null before the first. Asks no browser.
  [[nodiscard]] std::shared_ptr<const IndexedSnapshot> last() const;

private:
  mutable platform::Mutex mutex_;
  std::shared_ptr<const IndexedSnapshot> last_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
