// One loop takes messages off the stream and sorts them: requests and notifications become coroutines of their own,
// each with a signal that cancels it; answers wake whoever waits for them. All of it runs on one executor, so nothing
// is locked. Waiting is a timer that never expires and is cancelled. A message that is wrong in itself is answered, as
// far as it can be told whom, and never ends the conversation.
#include "rpc/Peer.h"

#include "platform/Logger.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/json/serialize.hpp>
#include <boost/system/system_error.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

namespace tabwright::rpc {

namespace asio = boost::asio;
namespace json = boost::json;

namespace {

constexpr auto forEver = asio::steady_timer::time_point::max();

bool isAborted(const boost::system::system_error& error) {
  return error.code() == asio::error::operation_aborted;
}

bool isRequestID(const json::value& id) {
  return id.is_string() || id.is_number();
}

json::object errorObject(const RpcError& error) {
  json::object object{{"code", error.code()}, {"message", error.message()}};
  if (!error.data().is_null())
    object["data"] = error.data();
  return object;
}

RpcError connectionEnded() {
  return {ErrorCode::connectionEnded, "The connection ended before there was an answer."};
}

/// The error that the other side answered with, however carelessly it wrote it.
RpcError readError(const json::value& error) {
  const json::object* object = error.if_object();
  const json::value* code = object ? object->if_contains("code") : nullptr;
  const json::value* message = object ? object->if_contains("message") : nullptr;
  const json::value* data = object ? object->if_contains("data") : nullptr;
  return {code && code->is_int64() ? static_cast<int>(code->get_int64()) : static_cast<int>(ErrorCode::internalError),
          message && message->is_string() ? std::string(message->get_string()) : std::string(),
          data ? *data : json::value(nullptr)};
}

} // namespace

class Peer::Conversation : public std::enable_shared_from_this<Peer::Conversation> {
public:
  Conversation(MessageStream& stream, std::size_t handlersAtOnce) : stream_(stream), handlersAtOnce_(handlersAtOnce) {}

  std::map<std::string, RequestHandler, std::less<>> requestHandlers;
  std::map<std::string, NotificationHandler, std::less<>> notificationHandlers;

  platform::Task<void> run() {
    // A cancelled run still has to wait for its handlers.
    co_await asio::this_coro::throw_if_cancelled(false);
    executor_ = co_await asio::this_coro::executor;
    asio::steady_timer allEnded(executor_, forEver);
    allEnded_ = &allEnded;
    try {
      while (std::optional<ReceivedMessage> message = co_await stream_.receive()) {
        take(std::move(*message));
        // The stream may have a message at once, without a wait that the cancellation could end.
        if ((co_await asio::this_coro::cancellation_state).cancelled() != asio::cancellation_type::none)
          break;
      }
    } catch (const boost::system::system_error& error) {
      if (!isAborted(error))
        log_.error("The stream broke: {}", error.what());
    }
    endAll();
    // In a loop, since the timer may have been cancelled before this began to wait, or by the run's own cancellation.
    while (!running_.empty())
      co_await allEnded.async_wait(asio::as_tuple(asio::use_awaitable));
    allEnded_ = nullptr;
    if ((co_await asio::this_coro::cancellation_state).cancelled() != asio::cancellation_type::none)
      throw boost::system::system_error(asio::error::operation_aborted);
    co_await asio::this_coro::throw_if_cancelled(true);
  }

  platform::Task<json::value> request(std::string method, json::object params) {
    if (hasEnded_)
      throw connectionEnded();
    const auto waiting = std::make_shared<Waiting>(co_await asio::this_coro::executor);
    const std::int64_t id = nextID_++;
    waiting_[id] = waiting;
    stream_.send(json::object{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", std::move(params)}});
    co_await waiting->answered.async_wait(asio::as_tuple(asio::use_awaitable));
    // Erased before anything is thrown, so a late answer finds nobody.
    waiting_.erase(id);
    if (waiting->error)
      throw *waiting->error;
    if (waiting->result)
      co_return std::move(*waiting->result);
    notify("notifications/cancelled", {{"requestId", id}});
    throw boost::system::system_error(asio::error::operation_aborted);
  }

  void notify(std::string_view method, json::object params) {
    stream_.send(json::object{{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(params)}});
  }

  // The conversation itself may be kept alive beyond the stream's life, so it is asked whether it has ended.
  Notifier notifier() {
    return [executor = executor_, weak = weak_from_this()](std::string method, json::object params) {
      asio::post(executor, [weak, method = std::move(method), params = std::move(params)]() mutable {
        if (const auto self = weak.lock(); self && !self->hasEnded_)
          self->notify(method, std::move(params));
      });
    };
  }

private:
  struct Running {
    asio::cancellation_signal cancel;
    bool isCancelled = false;
  };

  struct Waiting {
    explicit Waiting(const asio::any_io_executor& executor) : answered(executor, forEver) {}
    asio::steady_timer answered;
    std::optional<json::value> result;
    std::optional<RpcError> error;
  };

  void take(ReceivedMessage received) {
    if (!received)
      return takeUnreadable(received.error());
    json::object* message = received->if_object();
    if (!message)
      return refuse(nullptr, {ErrorCode::invalidRequest, "A message is an object; batches are not taken."});
    const json::value* id = message->if_contains("id");
    const json::value* method = message->if_contains("method");
    const json::value* version = message->if_contains("jsonrpc");
    // Answered even where it has no id, with null for one, as JSON-RPC has it for messages whose id can't be told.
    if (!version || *version != "2.0")
      return refuse(id && isRequestID(*id) ? *id : nullptr,
                    {ErrorCode::invalidRequest, "\"jsonrpc\" must be \"2.0\"."});
    // Sorted out before its id is looked at: an answer is never answered, be it ever so wrong.
    if (!method && (message->contains("result") || message->contains("error")))
      return takeAnswer(*message);
    if (id && !isRequestID(*id))
      return refuse(nullptr, {ErrorCode::invalidRequest, "The id of a request is a text or a number."});
    const json::value answered = id ? *id : json::value(nullptr);
    if (!method || !method->is_string())
      return refuse(answered, {ErrorCode::invalidRequest, "A message has a method."});
    json::value* params = message->if_contains("params");
    // A notification is never answered, not even with an error.
    if (params && !params->is_object()) {
      if (id)
        refuse(answered, {ErrorCode::invalidParams, "\"params\" must be an object."});
      return;
    }
    json::object parameters = params ? std::move(params->get_object()) : json::object();
    if (id)
      takeRequest(std::string(method->get_string()), answered, std::move(parameters));
    else
      takeNotification(std::string(method->get_string()), std::move(parameters));
  }

  void takeRequest(const std::string& method, const json::value& id, json::object params) {
    const auto handler = requestHandlers.find(method);
    if (handler == requestHandlers.end())
      return refuse(id, {ErrorCode::methodNotFound, "There is no method " + method + "."});
    if (running_.size() >= handlersAtOnce_)
      return refuse(id, {ErrorCode::tooManyRequests, "Too many requests are under way."});
    const std::string key = json::serialize(id);
    // The other side could not tell their answers apart, nor say which one it cancels.
    if (running_.contains(key))
      return refuse(id, {ErrorCode::invalidRequest, "A request with this id is under way."});
    const auto running = std::make_shared<Running>();
    start(key, serve(handler->second, id, std::move(params), running), running);
  }

  void takeNotification(const std::string& method, json::object params) {
    if (method == "notifications/cancelled")
      return cancel(params);
    const auto handler = notificationHandlers.find(method);
    if (handler == notificationHandlers.end() || running_.size() >= handlersAtOnce_)
      return;
    // Without quotation marks, so it is no request's key, and nobody can cancel it by an id.
    const std::string key = "notification " + std::to_string(nextNotification_++);
    start(key, hear(handler->second, method, std::move(params)), std::make_shared<Running>());
  }

  // An answer that can't be read is one all the same: nobody waits for it any longer.
  void takeUnreadable(const UnreadableMessage& message) {
    const auto& [id, hasMethod] = message.envelope;
    const auto found = !hasMethod && id.is_int64() ? waiting_.find(id.get_int64()) : waiting_.end();
    if (found == waiting_.end())
      return refuse(id, message.error);
    found->second->error = message.error;
    found->second->answered.cancel();
  }

  void takeAnswer(const json::object& message) {
    const json::value* id = message.if_contains("id");
    const auto found = id && id->is_int64() ? waiting_.find(id->get_int64()) : waiting_.end();
    if (found == waiting_.end())
      return; // the waiter has given up, or this answers a message of ours that couldn't be read
    Waiting& waiting = *found->second;
    if (const json::value* error = message.if_contains("error"))
      waiting.error = readError(*error);
    else
      waiting.result = message.at("result");
    waiting.answered.cancel();
  }

  void cancel(const json::object& params) {
    const json::value* id = params.if_contains("requestId");
    const auto found = id ? running_.find(json::serialize(*id)) : running_.end();
    if (found != running_.end())
      cancel(found->second);
  }

  // By value, since what ends by it takes itself out of the table.
  static void cancel(std::shared_ptr<Running> running) { // NOLINT(performance-unnecessary-value-param)
    running->isCancelled = true;
    running->cancel.emit(asio::cancellation_type::all);
  }

  void start(const std::string& key, platform::Task<void> task, const std::shared_ptr<Running>& running) {
    running_[key] = running;
    asio::co_spawn(
        executor_, std::move(task),
        asio::bind_cancellation_slot(running->cancel.slot(), [this, key, running](const std::exception_ptr&) {
          running_.erase(key);
          if (running_.empty() && allEnded_)
            allEnded_->cancel();
        }));
  }

  platform::Task<void> serve(const RequestHandler& handler, json::value id, json::object params,
                             std::shared_ptr<Running> running) {
    std::optional<json::value> result;
    std::optional<RpcError> error;
    try {
      result = co_await handler(std::move(params));
    } catch (const RpcError& thrown) {
      error = thrown;
    } catch (const platform::Failure& thrown) {
      error.emplace(ErrorCode::internalError, thrown.errorDescription());
    } catch (const std::exception& thrown) {
      error.emplace(ErrorCode::internalError, thrown.what());
    }
    // The Model Context Protocol has a cancelled request stay without an answer.
    if (running->isCancelled)
      co_return;
    if (error)
      refuse(id, *error);
    else
      stream_.send(json::object{{"jsonrpc", "2.0"}, {"id", std::move(id)}, {"result", std::move(*result)}});
  }

  platform::Task<void> hear(const NotificationHandler& handler, std::string method, json::object params) {
    try {
      co_await handler(std::move(params));
    } catch (const std::exception& thrown) {
      log_.error("Handling {} failed: {}", method, thrown.what());
    }
  }

  void refuse(const json::value& id, const RpcError& error) {
    stream_.send(json::object{{"jsonrpc", "2.0"}, {"id", id}, {"error", errorObject(error)}});
  }

  void endAll() {
    hasEnded_ = true;
    for (const auto& [id, waiting] : waiting_) {
      waiting->error = connectionEnded();
      waiting->answered.cancel();
    }
    const auto running = running_; // handlers that end take themselves out
    for (const auto& [key, handler] : running)
      cancel(handler);
  }

  MessageStream& stream_;
  const std::size_t handlersAtOnce_;
  platform::Logger log_{"RPC"};
  asio::any_io_executor executor_;
  std::map<std::string, std::shared_ptr<Running>, std::less<>> running_; ///< by the request's id as JSON
  std::map<std::int64_t, std::shared_ptr<Waiting>> waiting_;             ///< requests of our own
  asio::steady_timer* allEnded_ = nullptr;
  std::int64_t nextID_ = 1;
  std::uint64_t nextNotification_ = 1;
  bool hasEnded_ = false;
};

Peer::Peer(MessageStream& stream, std::size_t handlersAtOnce)
    : conversation_(std::make_shared<Conversation>(stream, handlersAtOnce)) {}
Peer::~Peer() = default;

void Peer::onRequest(std::string method, RequestHandler handler) {
  conversation_->requestHandlers[std::move(method)] = std::move(handler);
}

void Peer::onNotification(std::string method, NotificationHandler handler) {
  conversation_->notificationHandlers[std::move(method)] = std::move(handler);
}

platform::Task<void> Peer::run() {
  return conversation_->run();
}

platform::Task<json::value> Peer::request(std::string method, json::object params) {
  return conversation_->request(std::move(method), std::move(params));
}

void Peer::notify(std::string_view method, json::object params) {
  conversation_->notify(method, std::move(params));
}

Peer::Notifier Peer::notifier() const {
  return conversation_->notifier();
}

} // namespace tabwright::rpc
