#pragma once

#include "relay/RelayClient.h"
#include "relay/RelaySocket.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

struct pollfd;

namespace tabwright::relay {

/// Descriptors that the loop waits at. None is closed by it, none blocks.
struct RelayEnds {
  int fromBrowser; ///< readable
  int toBrowser;   ///< writable
  int listening;   ///< a Unix socket
  int stop;        ///< becomes readable when the relay is to end
};

/// Carries messages between the helper in the browser and any number of clients, in one thread that waits in poll(2)
/// and nowhere else.
///
/// Clients that send faster than the browser takes are not read meanwhile. The browser is always read: what a client
/// doesn't take waits, within bounds (mostPending), and then the client is given up. A client that sends what isn't
/// agreed, or belongs to somebody else, is closed; so is one too many.
class RelayLoop {
public:
  static constexpr std::size_t mostClients = 64;

  explicit RelayLoop(const RelayEnds& ends);

  /// Returns when the browser has closed its side or `stop` is readable. All clients are closed by then. Throws
  /// RelayFailure when the browser sends what isn't agreed, ends within a frame, or can't be spoken with.
  void run();

private:
  [[nodiscard]] std::vector<pollfd> waitedFor() const;
  /// False when the browser has closed its side.
  [[nodiscard]] bool receiveFromBrowser();
  [[nodiscard]] bool sendToBrowser();
  void serveClients(std::span<const pollfd> seen);
  void deliver(std::string content);
  void accept();
  void remove(const std::vector<ClientNumber>& numbers);

  const RelayEnds ends_;
  std::vector<char> buffer_; // for one read
  FrameReader frames_;
  std::string forBrowser_;
  std::size_t sentToBrowser_ = 0; // of forBrowser_
  std::vector<std::unique_ptr<RelayClient>> clients_;
  ClientNumber lastNumber_ = everyone;
};

} // namespace tabwright::relay
