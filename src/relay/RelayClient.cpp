#include "relay/RelayClient.h"

#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace tabwright::relay {
namespace {

bool isForLater(int error) {
  return error == EAGAIN || error == EINTR;
}

} // namespace

RelayClient::RelayClient(ClientNumber number, int socket) : number_(number), socket_(socket), pieces_(number) {}

RelayClient::~RelayClient() {
  ::close(socket_);
}

RelayClient::State RelayClient::receive(std::span<char> buffer, std::string& frames) {
  const ssize_t count = ::recv(socket_, buffer.data(), buffer.size(), 0);
  if (count < 0)
    return isForLater(errno) ? State::open : State::ended;
  if (count == 0)
    return State::ended;
  const std::size_t before = frames.size();
  State state = State::open;
  try {
    pieces_.feed({buffer.data(), static_cast<std::size_t>(count)}, frames);
  } catch (const Malformed&) {
    state = State::ended;
  }
  isKnown_ = isKnown_ || frames.size() > before;
  return state;
}

RelayClient::State RelayClient::enqueue(std::shared_ptr<const std::string> text, std::size_t begin, std::size_t end) {
  pending_ += end - begin;
  if (pending_ > mostPending)
    return State::ended;
  outgoing_.push_back({std::move(text), begin, end});
  return State::open;
}

RelayClient::State RelayClient::send() {
  while (!outgoing_.empty()) {
    Outgoing& next = outgoing_.front();
    const ssize_t count = ::send(socket_, next.text->data() + next.begin, next.end - next.begin, MSG_NOSIGNAL);
    if (count < 0)
      return isForLater(errno) ? State::open : State::ended;
    next.begin += static_cast<std::size_t>(count);
    pending_ -= static_cast<std::size_t>(count);
    if (next.begin == next.end)
      outgoing_.pop_front();
  }
  return State::open;
}

bool isTrustedPeer(int socket) {
  ucred peer{};
  socklen_t length = sizeof peer;
  return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 &&
         (peer.uid == ::geteuid() || peer.uid == 0);
}

} // namespace tabwright::relay
