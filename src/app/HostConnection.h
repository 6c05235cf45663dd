#pragma once

#include "host/Catalogue.h"

#include <boost/asio/any_io_executor.hpp>

#include <functional>
#include <memory>
#include <string_view>

namespace tabwright::app {

/// The host as a whole, as its connections see it. From any thread. It outlives its connections.
class HostService {
public:
  virtual ~HostService() = default;

  /// True when a client of this version is served. Not when the host has ended its service for newcomers, which it does
  /// at once for a client that is newer than itself.
  [[nodiscard]] virtual bool serves(std::string_view clientVersion) = 0;
};

/// A program that has connected to the background host: `tabwright run` (client/HostProtocol.h), or one that speaks the
/// Model Context Protocol. Actions that it has started are cancelled when it goes away.
///
/// Its functions may be called from any thread.
class HostConnection {
public:
  /// Takes over the descriptor of a connected stream socket. `executor` runs no two handlers at once; `catalogue` and
  /// `service` outlive the connection's end.
  HostConnection(const boost::asio::any_io_executor& executor, int socket, const host::Catalogue& catalogue,
                 HostService& service);
  ~HostConnection();
  HostConnection(const HostConnection&) = delete;
  HostConnection& operator=(const HostConnection&) = delete;

  /// Serves it until it ends and all that it has started has ended too; `ended` is called then, on the executor. Once.
  void serve(std::function<void()> ended);

  /// Ends it and cancels what it has started; `ended` follows when that has ended. Nothing happens to one that has
  /// ended, or isn't served.
  void end();

  /// True once it has sent a whole message, readable or not.
  [[nodiscard]] bool hasSpoken() const;

private:
  class Conversation;
  std::shared_ptr<Conversation> conversation_;
};

} // namespace tabwright::app
