#pragma once

#include "devtools/DevToolsFault.h"
#include "platform/CallLimits.h"
#include "platform/Mutex.h"

#include <boost/json/value.hpp>

#include <chrono>
#include <condition_variable>
#include <expected>
#include <optional>
#include <string>

namespace tabwright::devtools {

/// The error that a browser answered a call with (JSON-RPC 2.0, error object).
struct ProtocolError {
  int code = 0;
  std::string message;
};

/// One call under way: sent, and to be waited for. Made by Connection::send.
///
/// Ends once, by the first of: the browser's answer, the loss of the connection, and `fail` by whoever knows that no
/// answer will come. Later endings are ignored. Whoever drops the last reference gives up on the answer.
/// Safe to use from any thread.
class PendingCall {
public:
  /// The result is an object.
  using Answer = std::expected<boost::json::value, ProtocolError>;

  /// `method` is named in the failures of a wait that ends in vain.
  explicit PendingCall(std::string method) : method_(std::move(method)) {}

  /// Blocks until the call ends; yields the result, or the error that the browser answered with. To be called once.
  /// Throws DevToolsFailure: what it was failed with; timedOut or stopped by the limits.
  Answer await(const platform::CallLimits& limits);

  /// The same, with the browser's error thrown as `refused`.
  boost::json::value result(const platform::CallLimits& limits);

  /// Blocks until the call ends, however it does, and leaves the answer to whoever awaits it. Throws DevToolsFailure:
  /// timedOut or stopped by the limits.
  void awaitEnd(const platform::CallLimits& limits);

  /// A copy of what the browser answered, for one of several who wait; nothing when the call was failed because the
  /// page would not answer. Throws DevToolsFailure when it was failed for another reason.
  [[nodiscard]] std::optional<Answer> answer();
  /// When the browser answered; long ago before it has.
  [[nodiscard]] std::chrono::steady_clock::time_point answeredAt();
  /// True when it has ended without an answer.
  [[nodiscard]] bool hasFailed();

  /// True when waiting would return at once.
  [[nodiscard]] bool hasEnded();

  /// Ends the call with the browser's answer and wakes all who wait. Called by the connection.
  void complete(Answer answer);
  /// Ends the call without an answer; `detail` is what that case of `DevToolsFault` carries.
  void fail(DevToolsFault fault, std::string detail = {});

private:
  const std::string method_;
  platform::Mutex mutex_;
  std::condition_variable_any ended_;
  std::optional<Answer> answer_ GUARDED_BY(mutex_);
  std::optional<DevToolsFailure> failure_ GUARDED_BY(mutex_);
  std::chrono::steady_clock::time_point answeredAt_ GUARDED_BY(mutex_);
};

} // namespace tabwright::devtools
