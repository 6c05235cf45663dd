// The main actor waits for the listening socket and keeps the list of connections; each connection lives on a strand of
// the pool and reports its end back here.
#include "app/HostServer.h"

#include "client/HostProtocol.h"

#include <boost/asio/post.hpp>
#include <boost/asio/strand.hpp>
#include <boost/system/system_error.hpp>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <malloc.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tabwright::app {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::milliseconds pauseWhenRefused{100}; // such as for want of descriptors
constexpr std::chrono::seconds quietBeforeTrim{2};
constexpr const char* ownProgram = "/proc/self/exe";

bool isOfThisUser(int socket) {
  ucred peer{};
  socklen_t length = sizeof peer;
  return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == ::geteuid();
}

// Takes the number and its dot off the front.
unsigned takeNumber(std::string_view& version) {
  unsigned number = 0;
  std::from_chars(version.data(), version.data() + version.size(), number);
  const std::size_t dot = version.find('.');
  version.remove_prefix(dot == std::string_view::npos ? version.size() : dot + 1);
  return number;
}

std::filesystem::path programPath() {
  std::error_code ignored; // an unknown path is none that is ever replaced
  return std::filesystem::read_symlink(ownProgram, ignored);
}

} // namespace

bool isNewer(std::string_view a, std::string_view b) {
  while (!a.empty() || !b.empty()) {
    const unsigned first = takeNumber(a);
    const unsigned second = takeNumber(b);
    if (first != second)
      return first > second;
  }
  return false;
}

HostServer::HostServer(Surroundings surroundings, HostDoor door)
    : surroundings_(std::move(surroundings)), program_(programPath()), door_(std::move(door)),
      acceptor_(surroundings_.mainActor), pause_(surroundings_.mainActor) {
  // A duplicate: the acceptor closes what it has, and so does the door.
  acceptor_.assign(asio::local::stream_protocol(), ::fcntl(door_.socket.number(), F_DUPFD_CLOEXEC, 0));
  // Accepting goes on until nobody waits, which only a socket that doesn't block can tell.
  acceptor_.native_non_blocking(true);
}

HostServer::~HostServer() = default;

void HostServer::open() {
  awaitConnection();
}

void HostServer::awaitConnection() {
  if (isWaiting_ || isLeaving_ || closed_)
    return;
  isWaiting_ = true;
  acceptor_.async_wait(asio::local::stream_protocol::acceptor::wait_read,
                       [this](const boost::system::error_code& error) {
                         isWaiting_ = false;
                         if (!error)
                           takeConnections();
                       });
}

// All that wait, so that a crowd doesn't cost a round through the loop each.
void HostServer::takeConnections() {
  while (acceptor_.is_open()) {
    if (!makeRoom())
      return; // the end of a connection goes on from here
    const int socket = ::accept4(acceptor_.native_handle(), nullptr, nullptr, SOCK_CLOEXEC);
    if (socket >= 0) {
      take(socket);
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      return awaitConnection();
    } else if (errno != EINTR && errno != ECONNABORTED) {
      log_.error("A connection can't be taken: {}", std::strerror(errno));
      pause_.expires_after(pauseWhenRefused);
      return pause_.async_wait([this](const boost::system::error_code& error) {
        if (!error)
          awaitConnection();
      });
    }
  }
}

bool HostServer::makeRoom() {
  if (connections_.size() < surroundings_.connections)
    return true;
  // Room comes when it has ended, which may take a moment: nobody is taken before.
  const auto silent = std::ranges::find_if(connections_, [](const HostConnection& one) { return !one.hasSpoken(); });
  if (silent != connections_.end())
    silent->end();
  return false;
}

void HostServer::take(int socket) {
  if (!isOfThisUser(socket)) {
    log_.error("A connection of another user is turned away");
    ::close(socket);
    return;
  }
  pause_.cancel();
  try {
    connections_.emplace_back(asio::make_strand(surroundings_.pool), socket, surroundings_.catalogue, *this);
  } catch (const boost::system::system_error& error) { // short of descriptors; the client comes again
    log_.error("A connection can't be served: {}", error.what());
    return;
  }
  // A list, since iterators of the others must outlive whoever comes and goes.
  const auto connection = std::prev(connections_.end());
  connection->serve(
      [this, connection] { asio::post(surroundings_.mainActor, [this, connection] { hasEnded(connection); }); });
}

void HostServer::hasEnded(std::list<HostConnection>::iterator connection) {
  connections_.erase(connection);
  if (connections_.empty()) {
    if (closed_)
      return std::exchange(closed_, {})();
    if (isLeaving_)
      return surroundings_.retired();
    // malloc keeps what a crowd has used. It is given back when nobody comes for a while, not between two calls of a
    // loop.
    pause_.expires_after(quietBeforeTrim);
    pause_.async_wait([](const boost::system::error_code& error) {
      if (!error)
        ::malloc_trim(0);
    });
  }
  awaitConnection();
}

void HostServer::close(std::function<void()> closed) {
  isLeaving_ = true;
  closeDoor();
  if (connections_.empty())
    return closed();
  closed_ = std::move(closed);
  for (HostConnection& connection : connections_)
    connection.end();
}

bool HostServer::serves(std::string_view clientVersion) {
  if (isLeaving_)
    return false;
  if (!isNewer(clientVersion, surroundings_.version) && !isReplaced())
    return true;
  // Connections ask from their own threads: the first of them is the one that sees to the end.
  if (!isLeaving_.exchange(true)) {
    log_.info("A newer host is to follow this one");
    asio::post(surroundings_.mainActor, [this] { leave(); });
  }
  return false;
}

void HostServer::leave() {
  isLeaving_ = true;
  if (!acceptor_.is_open())
    return;
  closeDoor();
  // Those that have said nothing lose nothing by it, and would otherwise keep this host for ever.
  for (HostConnection& connection : connections_) {
    if (!connection.hasSpoken())
      connection.end();
  }
  // Else the last one that ends sees to it.
  if (connections_.empty() && !closed_)
    surroundings_.retired();
}

// The paths go before the lock is given up: whoever gets the lock may make a new socket there.
void HostServer::closeDoor() {
  pause_.cancel();
  if (!acceptor_.is_open())
    return;
  boost::system::error_code ignored;
  ::unlink(door_.path.c_str());
  if (door_.lock.isOpen())
    ::unlink(std::filesystem::path(door_.path).replace_extension(client::handover::lockEnding).c_str());
  acceptor_.close(ignored);
  door_.socket = platform::FileDescriptor();
  door_.lock = platform::FileDescriptor();
}

bool HostServer::isReplaced() const {
  struct stat running{};
  struct stat installed{};
  // An installation puts a new file in the old one's place; the link in /proc still leads to the one that runs.
  return ::stat(ownProgram, &running) == 0 && ::stat(program_.c_str(), &installed) == 0 &&
         (running.st_ino != installed.st_ino || running.st_dev != installed.st_dev);
}

} // namespace tabwright::app
