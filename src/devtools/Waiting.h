#pragma once

#include "platform/CallLimits.h"
#include "platform/Mutex.h"

#include <chrono>
#include <condition_variable>

namespace tabwright::devtools {

/// A browser or page that answered so lately counts as answering: what is sent to one that has frozen since then would
/// be carried out when it goes on, long after its caller has given up.
inline constexpr std::chrono::milliseconds lately{20};

/// Waits for a moment before something is looked at again. Throws DevToolsFailure: timedOut when the deadline comes
/// first (`what` names what is waited for), stopped at once when a stop is requested.
void pause(std::chrono::milliseconds duration, const char* what, const platform::CallLimits& limits);

/// Lets one thread at a time do something that takes long, while the others wait within their own limits.
///
///     const Turn::Holder holder = turn.take("connecting", limits);
class Turn {
public:
  /// Gives the turn back when it goes. Neither copied nor moved; the turn must outlive it.
  class Holder {
  public:
    explicit Holder(Turn* turn) : turn_(turn) {}
    ~Holder();
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

  private:
    Turn* turn_;
  };

  /// Waits for the turn, which lasts as long as the holder. Throws DevToolsFailure: timedOut (naming `what`), stopped.
  [[nodiscard]] Holder take(const char* what, const platform::CallLimits& limits);

private:
  platform::Mutex mutex_;
  std::condition_variable_any released_;
  bool isTaken_ GUARDED_BY(mutex_) = false;
};

} // namespace tabwright::devtools
