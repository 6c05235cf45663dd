#pragma once

#include "platform/Task.h"
#include "rpc/MessageStream.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tabwright::rpc {

/// This side of a conversation in JSON-RPC 2.0 (https://www.jsonrpc.org/specification): answers the requests of the
/// other side and makes requests of its own.
///
///     Peer peer(stream);
///     peer.onRequest("add", [](json::object params) -> Task<json::value> { co_return sumOf(params); });
///     co_await peer.run();
///
/// Parameters are objects or left out. Batches are refused, as the Model Context Protocol has none. That protocol's
/// notification "notifications/cancelled" (with `requestId`) cancels a handler and is no matter of the handlers.
///
/// Belongs to the executor of its stream, which runs no two handlers at once. Handlers run there, started in the order
/// of the messages, and several are under way at a time.
class Peer {
public:
  /// Yields the result, or throws: an `RpcError` as it is, any other `Failure` and exception as an internal error with
  /// its sentence. It must end soon after it was cancelled by its cancellation slot; nobody is answered then.
  using RequestHandler = std::function<platform::Task<boost::json::value>(boost::json::object params)>;
  /// Its exceptions are logged.
  using NotificationHandler = std::function<platform::Task<void>(boost::json::object params)>;

  /// `stream` outlives the peer. Of more than `handlersAtOnce` requests under way at a time the rest are answered with
  /// an error, and notifications are dropped.
  explicit Peer(MessageStream& stream, std::size_t handlersAtOnce = 128);
  ~Peer();
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  /// Handlers are set before `run` and stay.
  /// The method's name is compared as it stands. A request without a handler is answered with `methodNotFound`.
  void onRequest(std::string method, RequestHandler handler);
  /// A notification without a handler is dropped, as JSON-RPC has it.
  void onNotification(std::string method, NotificationHandler handler);

  /// Serves until the stream ends, then cancels the handlers under way and returns when all have ended. Cancelling does
  /// the same and throws the `boost::system::system_error` of `operation_aborted`. Once; the peer outlives the call.
  platform::Task<void> run();

  /// Asks the other side. Throws the `RpcError` that it answers with; one of `connectionEnded` when there is no answer
  /// to come. Cancelling tells the other side and throws `operation_aborted`.
  platform::Task<boost::json::value> request(std::string method, boost::json::object params);

  /// Tells the other side something. Dropped when the stream has ended.
  void notify(std::string_view method, boost::json::object params);

  /// Does the same from any thread, and may outlive the peer: what it is told after the end of `run` is dropped. To be
  /// made while the peer runs.
  using Notifier = std::function<void(std::string method, boost::json::object params)>;
  [[nodiscard]] Notifier notifier() const;

private:
  class Conversation;
  std::shared_ptr<Conversation> conversation_;
};

} // namespace tabwright::rpc
