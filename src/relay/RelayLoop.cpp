// Each round waits until one of the descriptors can do what is wanted of it, serves the clients that were there when it
// began, then the browser, and takes newcomers last.
#include "relay/RelayLoop.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace tabwright::relay {
namespace {

constexpr std::size_t readSize = std::size_t{256} << 10;
// Beyond it clients aren't read: enough to keep the browser busy.
constexpr std::size_t enoughForBrowser = std::size_t{4} << 20;
constexpr short endOrError = POLLHUP | POLLERR | POLLNVAL;

enum Place : std::size_t { stopPlace, inputPlace, outputPlace, listeningPlace, clientPlaces };

RelayFailure failed(const std::string& step) {
  return RelayFailure(step + " failed: " + std::strerror(errno));
}

} // namespace

RelayLoop::RelayLoop(const RelayEnds& ends) : ends_(ends), buffer_(readSize) {}

void RelayLoop::run() {
  for (;;) {
    std::vector<pollfd> waited = waitedFor();
    if (::poll(waited.data(), waited.size(), -1) < 0) {
      if (errno == EINTR)
        continue;
      throw failed("Waiting for the browser and its clients");
    }
    if (waited[stopPlace].revents != 0)
      break;
    serveClients(std::span(waited).subspan(clientPlaces));
    if (waited[inputPlace].revents != 0 && !receiveFromBrowser())
      break;
    if (!forBrowser_.empty() && !sendToBrowser())
      break;
    if (waited[listeningPlace].revents != 0)
      accept();
  }
  clients_.clear();
}

void RelayLoop::serveClients(std::span<const pollfd> seen) {
  std::vector<ClientNumber> ended;
  for (std::size_t index = 0; index < seen.size(); ++index) {
    RelayClient& client = *clients_[index];
    const short events = seen[index].revents;
    auto state = RelayClient::State::open;
    if ((events & POLLOUT) != 0)
      state = client.send();
    // The end of a client shows even while clients aren't read; what it has sent before is no more than its socket
    // held.
    if (state == RelayClient::State::open && (events & (POLLIN | endOrError)) != 0)
      state = client.receive(buffer_, forBrowser_);
    if (state == RelayClient::State::ended)
      ended.push_back(client.number());
  }
  remove(ended);
}

std::vector<pollfd> RelayLoop::waitedFor() const {
  const std::size_t pending = forBrowser_.size() - sentToBrowser_;
  std::vector<pollfd> waited(clientPlaces);
  waited[stopPlace] = {.fd = ends_.stop, .events = POLLIN, .revents = 0};
  waited[inputPlace] = {.fd = ends_.fromBrowser, .events = POLLIN, .revents = 0};
  waited[outputPlace] = {.fd = pending > 0 ? ends_.toBrowser : -1, .events = POLLOUT, .revents = 0};
  waited[listeningPlace] = {.fd = ends_.listening, .events = POLLIN, .revents = 0};
  for (const auto& client : clients_) {
    const int read = pending < enoughForBrowser ? POLLIN : 0;
    const int write = client->hasPending() ? POLLOUT : 0;
    waited.push_back({.fd = client->socket(), .events = static_cast<short>(read | write), .revents = 0});
  }
  return waited;
}

bool RelayLoop::receiveFromBrowser() {
  const ssize_t count = ::read(ends_.fromBrowser, buffer_.data(), buffer_.size());
  if (count < 0) {
    if (errno == EAGAIN || errno == EINTR)
      return true;
    throw failed("Reading from the browser");
  }
  if (count == 0) {
    if (frames_.isWithinFrame())
      throw RelayFailure("The browser ended within a message");
    return false;
  }
  try {
    frames_.feed({buffer_.data(), static_cast<std::size_t>(count)},
                 [this](std::string content) { deliver(std::move(content)); });
  } catch (const Malformed& reason) {
    throw RelayFailure(std::string("The browser doesn’t speak as agreed: ") + reason.what());
  }
  return true;
}

bool RelayLoop::sendToBrowser() {
  const ssize_t count =
      ::write(ends_.toBrowser, forBrowser_.data() + sentToBrowser_, forBrowser_.size() - sentToBrowser_);
  if (count < 0) {
    if (errno == EAGAIN || errno == EINTR)
      return true;
    if (errno == EPIPE)
      return false;
    throw failed("Writing to the browser");
  }
  sentToBrowser_ += static_cast<std::size_t>(count);
  // Moving the rest to the front costs least where little is left.
  if (sentToBrowser_ * 2 >= forBrowser_.size()) {
    forBrowser_.erase(0, sentToBrowser_);
    sentToBrowser_ = 0;
  }
  return true;
}

void RelayLoop::deliver(std::string content) {
  const Addressed addressed = readEnvelope(content);
  // The head of the client's frame is written over the envelope's own words, so the message is never copied.
  const std::size_t begin = addressed.begin - headSize;
  std::ranges::copy(frameHead(static_cast<std::uint32_t>(addressed.end - addressed.begin)),
                    content.begin() + static_cast<std::ptrdiff_t>(begin));
  const auto text = std::make_shared<const std::string>(std::move(content));
  std::vector<ClientNumber> ended;
  for (const auto& client : clients_) {
    const bool isMeant = addressed.client == everyone || addressed.client == client->number();
    if (isMeant && client->enqueue(text, begin, addressed.end) == RelayClient::State::ended)
      ended.push_back(client->number());
  }
  remove(ended);
}

void RelayLoop::accept() {
  const int socket = ::accept4(ends_.listening, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (socket < 0) {
    if (errno == EAGAIN || errno == EINTR || errno == ECONNABORTED)
      return;
    throw failed("Taking a client");
  }
  if (clients_.size() < mostClients && isTrustedPeer(socket))
    clients_.push_back(std::make_unique<RelayClient>(++lastNumber_, socket));
  else
    ::close(socket);
}

void RelayLoop::remove(const std::vector<ClientNumber>& numbers) {
  for (const ClientNumber number : numbers) {
    const auto client = std::ranges::find(clients_, number, &RelayClient::number);
    if ((*client)->isKnownToHelper())
      forBrowser_ += goneFrame(number);
    clients_.erase(client);
  }
}

} // namespace tabwright::relay
