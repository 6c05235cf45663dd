// One mutex and one condition: an ending is written once, and whoever waits looks for either kind of it.
#include "devtools/PendingCall.h"

#include <fmt/core.h>

namespace tabwright::devtools {

PendingCall::Answer PendingCall::await(const platform::CallLimits& limits) {
  awaitEnd(limits);
  const platform::MutexLock lock(mutex_);
  if (failure_)
    throw *failure_;
  return std::move(*answer_);
}

void PendingCall::awaitEnd(const platform::CallLimits& limits) {
  platform::MutexLock lock(mutex_);
  const auto hasEnded = [this]() REQUIRES(mutex_) { return answer_.has_value() || failure_.has_value(); };
  if (limits.wait(ended_, lock, hasEnded))
    return;
  // A stop is told from a deadline even where both have come: it is the one that somebody asked for.
  if (limits.stop.stop_requested())
    throw platform::failure(DevToolsFault::stopped);
  throw platform::failure(DevToolsFault::timedOut, method_);
}

boost::json::value PendingCall::result(const platform::CallLimits& limits) {
  Answer answer = await(limits);
  if (!answer)
    throw platform::failure(DevToolsFault::refused, fmt::format("{}: {}", method_, answer.error().message));
  return std::move(*answer);
}

std::optional<PendingCall::Answer> PendingCall::answer() {
  const platform::MutexLock lock(mutex_);
  // Failures of the other kinds come of the page's state, which the session tells by itself.
  if (failure_ && concernsBrowser(*failure_))
    throw *failure_;
  return answer_;
}

std::chrono::steady_clock::time_point PendingCall::answeredAt() {
  const platform::MutexLock lock(mutex_);
  return answeredAt_;
}

bool PendingCall::hasFailed() {
  const platform::MutexLock lock(mutex_);
  return failure_.has_value();
}

bool PendingCall::hasEnded() {
  const platform::MutexLock lock(mutex_);
  return answer_.has_value() || failure_.has_value();
}

void PendingCall::complete(Answer answer) {
  const platform::MutexLock lock(mutex_);
  if (!answer_ && !failure_) {
    answer_ = std::move(answer);
    answeredAt_ = std::chrono::steady_clock::now();
  }
  ended_.notify_all();
}

// The first ending counts: an answer that comes after a dialog was reported is no answer to whoever was told of that.
void PendingCall::fail(DevToolsFault fault, std::string detail) {
  const platform::MutexLock lock(mutex_);
  if (!answer_ && !failure_)
    failure_.emplace(fault, std::move(detail));
  ended_.notify_all();
}

} // namespace tabwright::devtools
