#pragma once

#include "devtools/Discovery.h"
#include "devtools/PendingCall.h"
#include "platform/CallLimits.h"
#include "platform/JSONReader.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tabwright::devtools {

/// Something that the browser reported of its own accord.
/// Handed to the listener of its session. Both members are views of the message, which lives until the listener
/// returns.
struct Event {
  std::string_view method; ///< such as "Page.javascriptDialogOpening"
  /// An object, empty where the event has none.
  platform::JSONReader parameters;
};

/// The messages over a connection so far, for benchmarks.
struct Traffic {
  std::uint64_t sent = 0;     ///< messages to the browser
  std::uint64_t received = 0; ///< messages from it, events among them
};

/// A connection to a browser: calls and events of the DevTools protocol over one websocket
/// (https://chromedevtools.github.io/devtools-protocol/, flat sessions).
///
///     auto connection = Connection::open(endpoint, limits);
///     boost::json::value version = connection->call("Browser.getVersion", {}, {}, limits);
///
/// Calls may be sent without waiting for those before them; the browser takes them up in order. When the channel
/// breaks, every call under way and every later one fails with `lost` and the reason. When the browser is frozen, every
/// call under way fails with `notAnswering`; the connection stays, since the browser may go on.
///
/// Safe to use from any thread. Listeners are called on the connection's own thread, one at a time, in the order of the
/// browser's messages; they must not block, and must not drop the last reference to the connection.
class Connection {
public:
  /// The bounds of a connection.
  /// A message is held in memory as a whole, so its size is bounded in both directions. Tests make all of them small.
  struct Bounds {
    std::size_t received = std::size_t{512}
                           << 20; ///< bytes of the largest message taken; a larger one breaks the connection
    std::size_t sent = std::size_t{128} << 20; ///< bytes of the largest message sent; a larger one is refused
    std::chrono::steady_clock::duration call = std::chrono::seconds(30); ///< how long a call without deadline may take
    /// The time that the browser may answer nothing at all while calls wait for it. It is asked a plain question
    /// before.
    std::chrono::milliseconds silence = std::chrono::seconds(5);
  };

  /// Connects, and shakes hands. Throws DevToolsFailure: unreachable, notAnswering, timedOut, stopped; lost when this
  /// process has run short of something, which says nothing about the browser.
  static std::shared_ptr<Connection> open(const Endpoint& endpoint, const platform::CallLimits& limits);
  /// The same with other bounds. Limits without a deadline get that of `Bounds::call`; a browser that takes the
  /// connection and says nothing is `notAnswering` after `Bounds::silence`.
  static std::shared_ptr<Connection> open(const Endpoint& endpoint, const platform::CallLimits& limits, Bounds bounds);
  /// Ends the thread: calls under way fail with `lost`, and no listener runs any more when this returns.
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Sends a call and returns at once. `session` is empty for the browser itself. A call that can't be sent yields one
  /// that has failed already. The answer is thrown away when the caller drops the result.
  std::shared_ptr<PendingCall> send(std::string method, boost::json::object parameters, std::string_view session = {});

  /// Sends a call and waits for its result, an object. Throws DevToolsFailure.
  boost::json::value call(std::string method, boost::json::object parameters, std::string_view session,
                          const platform::CallLimits& limits);

  /// Registers the listener of a session's events, in place of an earlier one. The event Target.detachedFromTarget goes
  /// to the session that it speaks of. Events of sessions without listener are dropped.
  void listen(const std::string& session, std::function<void(const Event&)> listener);
  /// Further events of the session are dropped. One that is being handed over may still reach the listener after this
  /// returns, so a listener holds what it needs itself, or weakly. Without a listener nothing happens.
  void stopListening(const std::string& session);

  /// True while calls can be expected to get through. Once false, false for ever.
  [[nodiscard]] bool isOpen() const;
  /// The counts of this moment; each is exact, but the two may be of different moments.
  [[nodiscard]] Traffic traffic() const;
  /// Waits until the browser has answered anything, unless it has sent something lately: for commands that a browser
  /// that is frozen must not find in its way when it goes on. Throws DevToolsFailure.
  void requireAnswer(const platform::CallLimits& limits);
  /// As given to `open`; they stay for the connection's life.
  [[nodiscard]] const Bounds& bounds() const;

private:
  /// The socket, its thread and the calls that wait, so that this header knows nothing of Asio.
  class Channel;
  explicit Connection(std::unique_ptr<Channel> channel);
  std::unique_ptr<Channel> channel_;
};

} // namespace tabwright::devtools
