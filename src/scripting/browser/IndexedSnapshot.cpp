#include "scripting/browser/IndexedSnapshot.h"

#include <string>
#include <utility>

namespace tabwright::scripting {

IndexedSnapshot::IndexedSnapshot(std::shared_ptr<const BrowserSnapshot> snapshot) : snapshot_(std::move(snapshot)) {
  windowTexts_.reserve(windows().size());
  tabTexts_.reserve(windows().size());
  for (std::size_t window = 0; window < windows().size(); ++window) {
    const WindowState& state = windows()[window];
    windowPositions_.emplace(state.id, window);
    windowTexts_.emplace_back(std::to_string(state.id));
    std::vector<applescript::Text>& texts = tabTexts_.emplace_back();
    texts.reserve(state.tabs.size());
    for (std::size_t tab = 0; tab < state.tabs.size(); ++tab) {
      // Made here once; each answer that names the tab shares the text.
      tabPositions_.emplace(state.tabs[tab].id, TabPosition{window, tab});
      texts.emplace_back(std::to_string(state.tabs[tab].id));
    }
  }
}

std::optional<std::size_t> IndexedSnapshot::findWindow(WindowID id) const {
  const auto found = windowPositions_.find(id);
  return found == windowPositions_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<TabPosition> IndexedSnapshot::findTab(TabID id) const {
  const auto found = tabPositions_.find(id);
  return found == tabPositions_.end() ? std::nullopt : std::optional(found->second);
}

std::shared_ptr<const IndexedSnapshot> SnapshotCache::take(BrowserDriver& driver, const CallLimits& limits) {
  std::shared_ptr<const BrowserSnapshot> snapshot = driver.snapshot(limits);
  {
    const platform::MutexLock lock(mutex_);
    if (last_ && last_->snapshot() == snapshot)
      return last_;
  }
  // Outside the lock: two threads may index the same snapshot at once, but none waits for the other.
  auto indexed = std::make_shared<const IndexedSnapshot>(std::move(snapshot));
  const platform::MutexLock lock(mutex_);
  last_ = indexed;
  return indexed;
}

std::shared_ptr<const IndexedSnapshot> SnapshotCache::last() const {
  const platform::MutexLock lock(mutex_);
  return last_;
}

} // namespace tabwright::scripting
