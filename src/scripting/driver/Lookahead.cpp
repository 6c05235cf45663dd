#include "scripting/driver/Lookahead.h"

#include "platform/Logger.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace tabwright::scripting {

using namespace std::chrono_literals;

namespace {

const platform::Logger log("Lookahead");

// The calls of one run follow each other faster than this, and one look after the last is enough.
constexpr std::chrono::nanoseconds moment = 200us;
constexpr int restsPerLook = 4;

} // namespace

Lookahead::Lookahead(std::function<void(const std::stop_token&)> look, std::chrono::nanoseconds usefulFor)
    : look_(std::move(look)), usefulFor_(usefulFor), thread_([this](const std::stop_token& stop) { run(stop); }) {}

void Lookahead::used() {
  const std::lock_guard lock(bell_->mutex);
  bell_->used = std::chrono::steady_clock::now();
}

std::function<void()> Lookahead::staleBell() const {
  return [bell = bell_] { ring(*bell); };
}

void Lookahead::ring(Bell& bell) {
  {
    const std::lock_guard lock(bell.mutex);
    bell.isStale = true;
  }
  bell.rung.notify_one();
}

/// Waits until a look is due; false when it is time to end.
bool Lookahead::awaitDue(const std::stop_token& stop, Time notBefore) const {
  Bell& bell = *bell_;
  std::unique_lock lock(bell.mutex);
  for (;;) {
    if (!bell.rung.wait(lock, stop, [&] { return bell.isStale; }))
      return false;
    const Time due = std::max(std::chrono::steady_clock::now() + moment, notBefore);
    bell.rung.wait_until(lock, stop, due, [] { return false; });
    if (stop.stop_requested())
      return false;
    bell.isStale = false;
    if (bell.used && std::chrono::steady_clock::now() - *bell.used < usefulFor_)
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
      log.debug("A look ahead failed: {}", error.what());
    }
    const Time ended = std::chrono::steady_clock::now();
    notBefore = ended + restsPerLook * (ended - began);
  }
}

} // namespace tabwright::scripting
