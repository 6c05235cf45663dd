// The thread waits until something is stale, lets a moment pass so that changes in a row cost one look, and looks. A
// change during a look is stale again, so none goes unseen. While nobody uses the browser the news are dropped: whoever
// comes next looks by itself.
#include "scripting/driver/Lookahead.h"

#include "platform/Logger.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace tabwright::scripting {

using namespace std::chrono_literals;

namespace {

const platform::Logger lookaheadLog("Lookahead");

// The calls of one run follow each other faster than this, and one look after the last is enough.
constexpr std::chrono::nanoseconds moment = 200us;
// A rest is so many times as long as the look before it, which leaves looks a fifth of the time.
constexpr int restsPerLook = 4;

} // namespace

Lookahead::Lookahead(std::function<void(const std::stop_token&)> look, std::chrono::nanoseconds usefulFor)
    : look_(std::move(look)), usefulFor_(usefulFor), thread_([this](const std::stop_token& stop) { run(stop); }) {}

void Lookahead::used() {
  const platform::MutexLock lock(signal_->mutex);
  signal_->used = std::chrono::steady_clock::now();
}

std::function<void()> Lookahead::staleSignal() const {
  return [signal = signal_] { raise(*signal); };
}

void Lookahead::raise(Signal& signal) {
  {
    const platform::MutexLock lock(signal.mutex);
    signal.isStale = true;
  }
  signal.raised.notify_one();
}

/// Waits until a look is due; false when it is time to end.
bool Lookahead::awaitDue(const std::stop_token& stop, Time notBefore) const {
  Signal& signal = *signal_;
  platform::MutexLock lock(signal.mutex);
  for (;;) {
    if (!signal.raised.wait(lock, stop, [&]() REQUIRES(signal.mutex) { return signal.isStale; }))
      return false;
    const Time due = std::max(std::chrono::steady_clock::now() + moment, notBefore);
    // Only a stop ends this early.
    signal.raised.wait_until(lock, stop, due, [] { return false; });
    if (stop.stop_requested())
      return false;
    signal.isStale = false;
    if (signal.used && std::chrono::steady_clock::now() - *signal.used < usefulFor_)
      return true;
  }
}

void Lookahead::run(const std::stop_token& stop) const {
  Time notBefore{};
  while (awaitDue(stop, notBefore)) {
    const Time began = std::chrono::steady_clock::now();
    try {
      look_(stop);
    } catch (const std::exception& error) {
      lookaheadLog.debug("A look ahead failed: {}", error.what());
    }
    const Time ended = std::chrono::steady_clock::now();
    notBefore = ended + restsPerLook * (ended - began);
  }
}

} // namespace tabwright::scripting
