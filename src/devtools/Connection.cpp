// One thread runs an I/O context with one websocket: it reads message after message, hands answers to their waiting
// calls by id and events to the listener of their session, and writes what callers have queued. Callers only take a
// mutex, so a call costs two hand-overs between threads. Whatever goes wrong on the channel ends in `lose`, which fails
// all that wait.
#include "devtools/Connection.h"

#include "devtools/Waiting.h"
#include "devtools/WireText.h"
#include "platform/FileFailure.h"
#include "platform/Mutex.h"

#include <boost/asio/connect.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <optional>
#include <thread>
#include <unordered_map>
#include <utility>

namespace tabwright::devtools {

namespace asio = boost::asio;
using Clock = std::chrono::steady_clock;
namespace beast = boost::beast;
using asio::ip::tcp;
using boost::system::error_code;
using platform::JSONReader;

class Connection::Channel {
public:
  explicit Channel(Bounds bounds) : bounds_(bounds), socket_(context_), work_(context_.get_executor()) {}

  // For a channel whose `open` has thrown: its thread is joined in any case.
  ~Channel() { close(); }

  void open(const Endpoint& endpoint, const platform::CallLimits& limits) {
    const auto opening = std::make_shared<PendingCall>("connecting");
    thread_ = std::thread([this] { run(); });
    asio::post(context_, [this, opening, endpoint] { connect(endpoint, opening); });
    const platform::CallLimits patience = limits.within(bounds_.silence);
    try {
      static_cast<void>(opening->await(patience));
    } catch (const DevToolsFailure& failure) {
      // Only the bound of silence passed, not the caller's deadline: the browser is frozen, and the caller is told so.
      if (failure.kind() != DevToolsFault::timedOut || patience.deadline == limits.deadline)
        throw;
      throw silent();
    }
  }

  /// Ends the thread. Waiting calls fail; listeners are called no more when this returns.
  void close() {
    lose("it was closed");
    context_.stop();
    if (thread_.joinable())
      thread_.join();
  }

  std::shared_ptr<PendingCall> send(std::string method, boost::json::object parameters, std::string_view session) {
    const auto pending = std::make_shared<PendingCall>(method);
    boost::json::object message;
    const std::int64_t id = nextID_.fetch_add(1);
    message["id"] = id;
    message["method"] = method;
    message["params"] = std::move(parameters);
    if (!session.empty())
      message["sessionId"] = session;
    // Serialised outside the lock, so that a long message of one caller holds no other up.
    std::string text = boost::json::serialize(message);
    if (text.size() > bounds_.sent) {
      pending->fail(DevToolsFault::refused, fmt::format("{}: a message of {} bytes is too large", method, text.size()));
      return pending;
    }

    const platform::MutexLock lock(mutex_);
    if (!isOpen_) {
      pending->fail(DevToolsFault::lost, lossReason_);
      return pending;
    }
    dropAbandoned();
    waiting_[id] = {pending, Clock::now()};
    if (!std::exchange(isWatched_, true))
      asio::post(context_, [this] { watch(); });
    // The message under way stays at the front until it is out, so an empty queue means that nobody is writing.
    const bool isIdle = queue_.empty();
    queue_.push_back(std::move(text));
    if (isIdle)
      asio::post(context_, [this] { write(); });
    return pending;
  }

  void listen(const std::string& session, std::function<void(const Event&)> listener) {
    const platform::MutexLock lock(mutex_);
    listeners_[session] = std::make_shared<std::function<void(const Event&)>>(std::move(listener));
  }

  void stopListening(const std::string& session) {
    const platform::MutexLock lock(mutex_);
    listeners_.erase(session);
  }

  [[nodiscard]] bool isOpen() const {
    const platform::MutexLock lock(mutex_);
    return isOpen_;
  }

  [[nodiscard]] Clock::time_point heardAt() const { return heardAt_.load(); }
  [[nodiscard]] Traffic traffic() const { return {sent_.load(), received_.load()}; }
  [[nodiscard]] const Bounds& bounds() const { return bounds_; }

private:
  struct Sent {
    // Weak: a caller that drops its call has given up on the answer.
    std::weak_ptr<PendingCall> call;
    Clock::time_point at;
  };
  using Waiting = std::unordered_map<std::int64_t, Sent>;

  static void failAll(const Waiting& waiting, DevToolsFault fault, const std::string& detail) {
    for (const auto& [id, sent] : waiting) {
      if (const std::shared_ptr<PendingCall> pending = sent.call.lock())
        pending->fail(fault, detail);
    }
  }

  void run() {
    try {
      context_.run();
    } catch (const std::exception& error) {
      lose(error.what());
    }
  }

  void connect(const Endpoint& endpoint, const std::shared_ptr<PendingCall>& opening) {
    const auto giveUp = [this, opening](const error_code& error) {
      // A shortage in this process says nothing about the browser.
      const bool isOurs = platform::isShortage(error.value());
      opening->fail(isOurs ? DevToolsFault::lost : DevToolsFault::unreachable, error.message());
      lose(error.message());
    };
    const tcp::endpoint address(asio::ip::address_v4::loopback(), endpoint.port);
    socket_.next_layer().async_connect(address, [this, opening, endpoint, giveUp](error_code error) {
      if (error)
        return giveUp(error);
      socket_.next_layer().set_option(tcp::no_delay(true), error);
      socket_.read_message_max(bounds_.received);
      socket_.write_buffer_bytes(std::size_t{64} << 10);
      // A call goes out as one frame, and up to the buffer's length in one write.
      socket_.auto_fragment(false);
      socket_.text(true);
      const std::string host = fmt::format("127.0.0.1:{}", endpoint.port);
      socket_.async_handshake(host, endpoint.path, [this, opening, giveUp](error_code refusal) {
        if (refusal)
          return giveUp(refusal);
        {
          const platform::MutexLock lock(mutex_);
          isOpen_ = true;
        }
        read();
        opening->complete(boost::json::object{});
      });
    });
  }

  /// In pieces, since a browser that is sending a long message is not silent.
  void read() {
    constexpr std::size_t piece = std::size_t{1} << 20;
    socket_.async_read_some(buffer_, piece, [this](error_code error, std::size_t) {
      if (error)
        return lose(reasonOf(error));
      heardAt_ = Clock::now();
      if (!socket_.is_message_done())
        return read();
      received_.fetch_add(1);
      const auto bytes = buffer_.cdata();
      try {
        // Listeners run in here too: an event of another shape than they read is no message of the protocol either.
        dispatch(parseMessage({static_cast<const char*>(bytes.data()), bytes.size()}));
      } catch (const std::exception& unreadable) {
        return lose(fmt::format("it sent what is not a message of the protocol ({})", unreadable.what()));
      }
      buffer_.clear();
      // A snapshot of a huge page would otherwise keep its memory for the rest of the connection's life.
      constexpr std::size_t usual = std::size_t{1} << 20;
      if (buffer_.capacity() > usual)
        buffer_.shrink_to_fit();
      read();
    });
  }

  static std::string reasonOf(const error_code& error) {
    if (error == beast::websocket::error::message_too_big || error == beast::websocket::error::buffer_overflow)
      return "it sent a message that is too large";
    if (error == beast::websocket::error::closed || error == asio::error::eof || error == asio::error::connection_reset)
      return "the browser ended it";
    return error.message();
  }

  void dispatch(boost::json::value message) {
    const JSONReader fields(message);
    if (const auto id = fields.find<std::int64_t>("id"))
      return answer(*id, message);

    static const boost::json::value none = boost::json::object();
    const auto method = fields.require<std::string>("method");
    const Event event{method, fields.find<JSONReader>("params").value_or(JSONReader(none))};
    // Proves the shape here, where a mismatch ends the connection, rather than in whichever listener reads it first.
    static_cast<void>(event.parameters.object());
    // The browser sends this event to the parent of the session that ended, and names that one in the parameters.
    const JSONReader& addressed = method == "Target.detachedFromTarget" ? event.parameters : fields;
    report(addressed.find<std::string>("sessionId").value_or(""), event);
  }

  /// Reads the answer before looking for its call: one that can't be read must leave the call among those that hear of
  /// the loss.
  static PendingCall::Answer readAnswer(boost::json::value& message) {
    const JSONReader fields(message);
    if (const auto error = fields.find<JSONReader>("error"))
      return std::unexpected(ProtocolError{error->require<int>("code"), error->require<std::string>("message")});
    static_cast<void>(fields.require<JSONReader>("result").object());
    return std::move(message.at("result"));
  }

  void answer(std::int64_t id, boost::json::value& message) {
    PendingCall::Answer read = readAnswer(message);
    std::shared_ptr<PendingCall> pending;
    {
      const platform::MutexLock lock(mutex_);
      const auto found = waiting_.find(id);
      // The answer to a call that was failed as unanswered, or dropped as abandoned.
      if (found == waiting_.end())
        return;
      pending = found->second.call.lock();
      waiting_.erase(found);
    }
    if (pending)
      pending->complete(std::move(read));
  }

  void report(const std::string& session, const Event& event) {
    std::shared_ptr<std::function<void(const Event&)>> listener;
    {
      const platform::MutexLock lock(mutex_);
      const auto found = listeners_.find(session);
      if (found == listeners_.end())
        return;
      // Shared, so that it may be replaced or taken away while it runs, and run without the lock, since it may make
      // calls.
      listener = found->second;
    }
    (*listener)(event);
  }

  // ------------------------------------------------------------------------------------------------------- silence
  // While calls wait, a timer looks after them: when nothing has come for four fifths of the time that a browser may be
  // silent, it is asked a plain question, which the main process of a browser answers whatever its pages do.

  [[nodiscard]] DevToolsFailure silent() const {
    return platform::failure(DevToolsFault::notAnswering,
                             fmt::format("{} seconds", std::chrono::duration<double>(bounds_.silence).count()));
  }

  void watch() {
    const auto patience = bounds_.silence * 4 / 5;
    const std::optional<Clock::time_point> asked = oldestWaiting();
    if (!asked)
      return;
    const Clock::time_point due = std::max(*asked, heardAt_.load()) + patience;
    if (Clock::now() < due)
      return wake(due, [this] { watch(); });
    question_ = send("Browser.getVersion", {}, {});
    // The time counts from the question: that this process slept is no silence of the browser's.
    wake(Clock::now() + bounds_.silence - patience, [this] { judge(); });
  }

  void judge() {
    // Ended by an answer or by a loss: neither is silence.
    if (question_->hasEnded())
      return watch();
    Waiting waiting;
    {
      const platform::MutexLock lock(mutex_);
      waiting.swap(waiting_);
      isWatched_ = false;
    }
    failAll(waiting, DevToolsFault::notAnswering, silent().detail());
  }

  template <class Next>
  void wake(Clock::time_point when, Next next) {
    silence_.expires_at(when);
    silence_.async_wait([next](error_code error) {
      if (!error)
        next();
    });
  }

  /// When the oldest of the calls that somebody waits for was sent; without any the watch is over.
  std::optional<Clock::time_point> oldestWaiting() {
    const platform::MutexLock lock(mutex_);
    std::optional<Clock::time_point> oldest;
    for (const auto& [id, sent] : waiting_) {
      if (!sent.call.expired() && (!oldest || sent.at < *oldest))
        oldest = sent.at;
    }
    isWatched_ = oldest.has_value();
    return oldest;
  }

  /// Writes the front of the queue; it stays there until it is out, which tells `send` that a write is under way.
  void write() {
    const std::string* text = nullptr;
    {
      const platform::MutexLock lock(mutex_);
      if (!isOpen_ || queue_.empty())
        return;
      text = &queue_.front();
    }
    socket_.async_write(asio::buffer(*text), [this](error_code error, std::size_t) {
      if (error)
        return lose(reasonOf(error));
      sent_.fetch_add(1);
      // Told under the lock: a `send` that finds the queue empty starts a write of its own.
      bool hasMore = false;
      {
        const platform::MutexLock lock(mutex_);
        queue_.pop_front();
        hasMore = !queue_.empty();
      }
      if (hasMore)
        write();
    });
  }

  void lose(const std::string& reason) {
    Waiting waiting;
    std::string firstReason;
    {
      const platform::MutexLock lock(mutex_);
      if (lossReason_.empty())
        lossReason_ = reason;
      firstReason = lossReason_;
      isOpen_ = false;
      waiting.swap(waiting_);
    }
    failAll(waiting, DevToolsFault::lost, firstReason);
    // Ends reading and writing; on a thread that isn't the context's, `close` stops the context instead.
    if (std::this_thread::get_id() == thread_.get_id()) {
      error_code ignored;
      socket_.next_layer().close(ignored);
    }
  }

  /// Forgets calls that nobody waits for any more and that the browser has never answered, now and then.
  void dropAbandoned() REQUIRES(mutex_) {
    constexpr std::size_t many = 512;
    if (waiting_.size() >= many)
      std::erase_if(waiting_, [](const auto& entry) { return entry.second.call.expired(); });
  }

  const Bounds bounds_;
  asio::io_context context_{1};
  beast::websocket::stream<tcp::socket, false> socket_;
  asio::executor_work_guard<asio::io_context::executor_type> work_;
  beast::flat_buffer buffer_;
  std::thread thread_;
  std::atomic<std::int64_t> nextID_{1};
  std::atomic<std::uint64_t> sent_{0};
  std::atomic<std::uint64_t> received_{0};
  std::atomic<Clock::time_point> heardAt_{Clock::time_point{}};
  asio::steady_timer silence_{context_};
  std::shared_ptr<PendingCall> question_; // the plain one

  mutable platform::Mutex mutex_;
  bool isOpen_ GUARDED_BY(mutex_) = false;
  std::string lossReason_ GUARDED_BY(mutex_);
  bool isWatched_ GUARDED_BY(mutex_) = false; // the timer runs
  std::deque<std::string> queue_ GUARDED_BY(mutex_);
  Waiting waiting_ GUARDED_BY(mutex_);
  std::unordered_map<std::string, std::shared_ptr<std::function<void(const Event&)>>> listeners_ GUARDED_BY(mutex_);
};

Connection::Connection(std::unique_ptr<Channel> channel) : channel_(std::move(channel)) {}

Connection::~Connection() {
  channel_->close();
}

std::shared_ptr<Connection> Connection::open(const Endpoint& endpoint, const platform::CallLimits& limits) {
  return open(endpoint, limits, Bounds{});
}

std::shared_ptr<Connection> Connection::open(const Endpoint& endpoint, const platform::CallLimits& limits,
                                             Bounds bounds) {
  auto channel = std::make_unique<Channel>(bounds);
  channel->open(endpoint, platform::boundedBy(limits, bounds.call));
  return std::shared_ptr<Connection>(new Connection(std::move(channel)));
}

std::shared_ptr<PendingCall> Connection::send(std::string method, boost::json::object parameters,
                                              std::string_view session) {
  return channel_->send(std::move(method), std::move(parameters), session);
}

boost::json::value Connection::call(std::string method, boost::json::object parameters, std::string_view session,
                                    const platform::CallLimits& limits) {
  return send(std::move(method), std::move(parameters), session)
      ->result(platform::boundedBy(limits, channel_->bounds().call));
}

void Connection::listen(const std::string& session, std::function<void(const Event&)> listener) {
  channel_->listen(session, std::move(listener));
}

void Connection::stopListening(const std::string& session) {
  channel_->stopListening(session);
}

void Connection::requireAnswer(const platform::CallLimits& limits) {
  if (Clock::now() - channel_->heardAt() > lately)
    call("Browser.getVersion", {}, {}, limits);
}

bool Connection::isOpen() const {
  return channel_->isOpen();
}
Traffic Connection::traffic() const {
  return channel_->traffic();
}
const Connection::Bounds& Connection::bounds() const {
  return channel_->bounds();
}

} // namespace tabwright::devtools
