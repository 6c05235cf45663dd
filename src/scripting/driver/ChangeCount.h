#pragma once

#include "devtools/DevToolsFault.h"
#include "platform/CallLimits.h"
#include "platform/Mutex.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>

namespace tabwright::scripting {

/// Counts the changes in a browser, those that it reports and those of ours. What was seen between two equal counts
/// holds; a count itself says nothing. Safe to use from any thread.
///
///     const std::uint64_t before = changes.load();
///     look();
///     changes.awaitOther(before, "the tab", limits); // returns at once for a change during the look
class ChangeCount {
public:
  /// Wakes all who wait.
  void add() {
    {
      // The count is atomic; the mutex keeps one who is about to wait from missing it.
      const platform::MutexLock lock(mutex_);
      count_.fetch_add(1);
    }
    added_.notify_all();
  }
  /// Takes no lock: it is asked for each event of a script.
  [[nodiscard]] std::uint64_t load() const { return count_.load(); }

  /// Waits until the count is another than it was. Throws DevToolsFailure: timedOut (naming `what`), stopped.
  void awaitOther(std::uint64_t before, const char* what, const platform::CallLimits& limits) {
    platform::MutexLock lock(mutex_);
    if (limits.wait(added_, lock, [&] { return count_.load() != before; }))
      return;
    if (limits.stop.stop_requested())
      throw platform::failure(devtools::DevToolsFault::stopped);
    throw platform::failure(devtools::DevToolsFault::timedOut, what);
  }

private:
  platform::Mutex mutex_;
  std::condition_variable_any added_;
  std::atomic<std::uint64_t> count_ = 0;
};

} // namespace tabwright::scripting
