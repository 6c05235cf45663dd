#pragma once

#include "platform/Task.h"
#include "rpc/Envelope.h"
#include "rpc/RpcError.h"

#include <boost/json/value.hpp>

#include <chrono>
#include <expected>
#include <optional>

namespace tabwright::rpc {

/// Bytes that are no message, as far as they can be told: the error that answers them.
/// The envelope says whether it was a request, which is to be answered with the error, or an answer that somebody waits
/// for.
struct UnreadableMessage {
  RpcError error;
  Envelope envelope = {};
};

/// A message from the other side: a JSON value, or bytes that are none.
using ReceivedMessage = std::expected<boost::json::value, UnreadableMessage>;

/// The messages to and from one peer, in order. Message borders are kept; what a message means is not looked at.
///
/// Belongs to one executor that never runs two handlers at once (a strand, or the context of one thread): every
/// function is called there.
class MessageStream {
public:
  virtual ~MessageStream() = default;

  /// Waits for the next message; nothing when the other side has ended the stream, or it broke, or `close` was called.
  /// A message that can't be read yields an error, and the next call the message behind it. Half a message at the end
  /// is dropped. Cancelling throws the `boost::system::system_error` of `operation_aborted`. One call at a time.
  virtual platform::Task<std::optional<ReceivedMessage>> receive() = 0;

  /// Queues a message and returns at once. On a stream that has ended, or when the other side has left too much unread,
  /// nothing is queued; in the latter case the stream ends.
  virtual void send(const boost::json::value& message) = 0;

  /// Waits until everything queued has left this process, no longer than `atMost`, or until the stream breaks.
  /// One call at a time.
  virtual platform::Task<void> flush(std::chrono::nanoseconds atMost) = 0;

  /// Ends the stream in both directions at once. What is still queued is dropped.
  virtual void close() = 0;
};

} // namespace tabwright::rpc
