#pragma once

#include "app/HostConnection.h"
#include "host/Catalogue.h"
#include "platform/Logger.h"
#include "platform/linux/FileDescriptor.h"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/steady_timer.hpp>

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <list>
#include <string>
#include <string_view>

namespace tabwright::app {

/// The door at which the host is found: a listening Unix socket, and the lock that says there is a host. Both are given
/// up together.
struct HostDoor {
  platform::FileDescriptor socket;
  platform::FileDescriptor lock; ///< none where nobody else would serve at the same path
  std::filesystem::path path;    ///< of the socket; it is removed when the door is closed
};

/// Takes the connections of the background host and serves them side by side, at most `Surroundings::connections` at a
/// time: beyond that a connection that has said nothing yet has to go, the oldest first; when all have spoken,
/// newcomers wait. Programs of other users are turned away.
///
/// Belongs to the main actor, but for `serves`.
///
///     HostServer server({.mainActor = loop, .pool = pool, .catalogue = catalogue, .version = "0.1.0",
///                        .retired = stop}, std::move(door));
///     server.open();
class HostServer final : public HostService {
public:
  struct Surroundings {
    /// Runs no two handlers at once.
    boost::asio::any_io_executor mainActor;
    boost::asio::any_io_executor pool; ///< where connections are served; any number of threads
    /// Outlives the server.
    const host::Catalogue& catalogue;
    std::string version; ///< of this host, such as "0.1.0"
    /// Called on the main actor when a host that takes no more connections has served the last one.
    std::function<void()> retired;
    std::size_t connections = 256;
  };

  /// Takes the door over: `leave` and `close` give it up, the destructor only closes its descriptors. Throws
  /// `boost::system::system_error` when there are no descriptors left.
  HostServer(Surroundings surroundings, HostDoor door);
  /// `close` has ended by then, or `open` was never called.
  ~HostServer() override;

  /// Begins to take connections. Returns at once; the rest happens on the main actor's loop. Once.
  void open();

  /// Takes no more connections, so that the next caller starts another host, and serves those there are to their end.
  /// Called on the main actor.
  void leave();

  /// Takes no more connections and ends all there are, then calls `closed`, on the main actor, once all that they had
  /// started has ended; at once where there are none. Once.
  void close(std::function<void()> closed);

  /// Also false for a host whose program file has been replaced since: the next one is started from the new file. The
  /// first false closes the door, so that the next host can come, and what runs is finished.
  [[nodiscard]] bool serves(std::string_view clientVersion) override;

private:
  void awaitConnection();
  void takeConnections();
  bool makeRoom();
  void take(int socket);
  void hasEnded(std::list<HostConnection>::iterator connection);
  void closeDoor();
  [[nodiscard]] bool isReplaced() const;

  const Surroundings surroundings_;
  const std::filesystem::path program_;
  platform::Logger log_{"HostServer"};
  HostDoor door_;
  boost::asio::local::stream_protocol::acceptor acceptor_;
  boost::asio::steady_timer pause_;       ///< before the next attempt to accept, or before memory is given back
  std::list<HostConnection> connections_; ///< oldest first
  std::function<void()> closed_;          ///< set while closing
  bool isWaiting_ = false;                ///< for the next connection
  std::atomic<bool> isLeaving_ = false;
};

/// True when version `a` is newer than `b`. Both are numbers with dots between; what isn't there or is no number counts
/// as zero.
[[nodiscard]] bool isNewer(std::string_view a, std::string_view b);

} // namespace tabwright::app
