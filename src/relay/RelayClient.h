#pragma once

#include "relay/Envelope.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <span>
#include <string>

namespace tabwright::relay {

/// Bytes that may wait for a client that doesn't read. One that lets more come together is given up.
inline constexpr std::size_t mostPending = longestFrame + headSize;

/// A client's connection: what it sends, as pieces for the browser, and what waits to be sent to it. Nothing here
/// waits.
class RelayClient {
public:
  enum class State { open, ended };

  /// Owns the connected socket, which doesn't block.
  RelayClient(ClientNumber number, int socket);
  ~RelayClient();
  RelayClient(const RelayClient&) = delete;
  RelayClient& operator=(const RelayClient&) = delete;

  [[nodiscard]] ClientNumber number() const noexcept { return number_; }
  [[nodiscard]] int socket() const noexcept { return socket_; }
  /// True once the helper has been given a piece of it: only then has it to hear when the client leaves.
  [[nodiscard]] bool isKnownToHelper() const noexcept { return isKnown_; }
  [[nodiscard]] bool hasPending() const noexcept { return pending_ > 0; }

  /// Reads once, into `buffer`, and appends what comes of it to `frames`. Ended when the client has left, or has sent
  /// rubbish.
  [[nodiscard]] State receive(std::span<char> buffer, std::string& frames);
  /// Lines up bytes of a text that several clients may share. Ended when too many wait already.
  [[nodiscard]] State enqueue(std::shared_ptr<const std::string> text, std::size_t begin, std::size_t end);
  /// Sends what the socket takes now. Ended when the client has left.
  [[nodiscard]] State send();

private:
  struct Outgoing {
    std::shared_ptr<const std::string> text;
    std::size_t begin;
    std::size_t end;
  };

  const ClientNumber number_;
  const int socket_;
  MessagePieces pieces_;
  bool isKnown_ = false;
  std::deque<Outgoing> outgoing_;
  std::size_t pending_ = 0;
};

/// True for a peer of a connected Unix socket whose process belongs to this user or to root.
[[nodiscard]] bool isTrustedPeer(int socket);

} // namespace tabwright::relay
