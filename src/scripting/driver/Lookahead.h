#pragma once

#include "platform/Mutex.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>

namespace tabwright::scripting {

/// The choice of a driver with a Lookahead or without.
enum class LooksAhead { no, yes };

/// Looks at a browser before anybody asks, so that what was seen is up to date when the next action comes.
///
///     Lookahead lookahead([&](const std::stop_token& stop) { look(stop); });
///     lookahead.used();
///     lookahead.stale(); // a look follows
///
/// A look follows each `stale`, a moment later, on a thread of its own; but only while somebody uses the browser, and
/// with rests so that looking takes no more than a fifth of the time. Safe to use from any thread.
class Lookahead {
public:
  /// `look` is called on the thread, one call at a time, and should end when a stop is requested; what it throws is
  /// logged. `usefulFor` tells how long after a use looks are still worth their while.
  explicit Lookahead(std::function<void(const std::stop_token&)> look,
                     std::chrono::nanoseconds usefulFor = std::chrono::seconds(1));
  /// Stops the look under way and waits for it.
  ~Lookahead() = default;
  Lookahead(const Lookahead&) = delete;
  Lookahead& operator=(const Lookahead&) = delete;

  /// Somebody uses the browser now.
  void used();
  /// The last look holds no more.
  void stale() { raise(*signal_); }
  /// `stale` for those who may outlive this: does nothing then.
  [[nodiscard]] std::function<void()> staleSignal() const;

private:
  using Time = std::chrono::steady_clock::time_point;

  /// The news that the thread waits for. Shared with the functions of `staleSignal`, which may outlive this.
  struct Signal {
    platform::Mutex mutex;
    std::condition_variable_any raised;
    bool isStale GUARDED_BY(mutex) = false;
    std::optional<Time> used GUARDED_BY(mutex);
  };

  /// Needs no Lookahead, only its signal.
  static void raise(Signal& signal);
  void run(const std::stop_token& stop) const;
  /// True when a look is due, false when the thread is to end. `notBefore` is the end of its rest.
  [[nodiscard]] bool awaitDue(const std::stop_token& stop, Time notBefore) const;

  const std::function<void(const std::stop_token&)> look_;
  const std::chrono::nanoseconds usefulFor_;
  const std::shared_ptr<Signal> signal_ = std::make_shared<Signal>();
  std::jthread thread_; // the last member: it ends before what it uses
};

} // namespace tabwright::scripting
