// A relay is known by its socket's name, which is its process; its parent is the browser. Who listens is checked once
// connected, by the credentials that the kernel has of the peer (unix(7), SO_PEERCRED). Answers find their calls by
// number. The socket is written to by whoever calls, in turn, and read by one thread, which a shutdown of the socket
// wakes.
#include "scripting/driver/RelayConnection.h"

#include "devtools/DevToolsFault.h"
#include "devtools/Waiting.h"
#include "platform/JSONReader.h"
#include "platform/JSONText.h"
#include "platform/Logger.h"
#include "platform/linux/ProcessAge.h"
#include "session/TrustedFolder.h"

#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using devtools::PendingCall;
using namespace std::chrono_literals;

namespace {

const platform::Logger relayLog("RelayConnection");

constexpr auto patienceWithCalls = 30s;
/// The time that the helper may answer nothing at all while calls wait for it.
constexpr auto longestSilence = 5s;
constexpr timeval connectPatience{.tv_sec = 5, .tv_usec = 0};
constexpr auto writingPause = 50ms;
constexpr std::size_t largestMessage = std::size_t{512} << 20; // bytes, either way

/// The folders in which the relays of a user's browsers may have put their sockets.
std::vector<std::filesystem::path> relayFolders(uid_t owner) {
  if (owner == ::geteuid())
    return {std::filesystem::path(session::runtimePath()) / "relay"};
  // Root drives the browsers of others.
  return {fmt::format("/run/user/{}/tabwright/relay", owner), fmt::format("/tmp/tabwright-{}/relay", owner)};
}

std::string reasonOf(int number) {
  return std::generic_category().message(number);
}

/// The number behind the beginning of a message; nothing where it begins otherwise.
std::optional<std::int64_t> numberBehind(std::string_view message, std::string_view head) {
  std::int64_t number = 0;
  if (!message.starts_with(head) ||
      std::from_chars(message.data() + head.size(), message.data() + message.size(), number).ec != std::errc())
    return std::nullopt;
  return number;
}

bool readWhole(int socket, char* into, std::size_t size) {
  while (size > 0) {
    const ssize_t count = ::recv(socket, into, size, 0);
    if (count < 0 && errno == EINTR)
      continue;
    if (count <= 0)
      return false;
    into += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

} // namespace

std::vector<RelayPlace> findRelays(const platform::RunningBrowser& browser) {
  std::vector<RelayPlace> relays;
  for (const std::filesystem::path& folder : relayFolders(browser.owner)) {
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder, error), last; !error && it != last; it.increment(error)) {
      const std::string name = it->path().filename().string();
      RelayPlace place{.socket = it->path()};
      const auto [end, failed] = std::from_chars(name.data(), name.data() + name.size(), place.relay);
      if (failed == std::errc() && std::string_view(end) == ".sock" &&
          platform::parentOfProcess(place.relay) == browser.process)
        relays.push_back(std::move(place));
    }
  }
  std::ranges::sort(relays, std::ranges::greater(), &RelayPlace::relay);
  return relays;
}

std::shared_ptr<RelayConnection> RelayConnection::open(const RelayPlace& place, const platform::RunningBrowser& browser,
                                                       RelayListener listener, const platform::CallLimits& limits) {
  const auto unreachable = [&](const std::string& reason) {
    return platform::failure(DevToolsFault::unreachable, fmt::format("{}: {}", place.socket.string(), reason));
  };
  platform::FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!socket.isOpen())
    throw unreachable(reasonOf(errno));
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  const std::string path = place.socket.string();
  if (path.size() >= sizeof(address.sun_path))
    throw unreachable("its path is too long for a socket");
  std::memcpy(address.sun_path, path.c_str(), path.size());
  // Connecting counts as sending: a relay that has been stopped takes nobody in.
  ::setsockopt(socket.number(), SOL_SOCKET, SO_SNDTIMEO, &connectPatience, sizeof(connectPatience));
  if (::connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
    throw unreachable(reasonOf(errno));
  ucred peer{};
  socklen_t size = sizeof(peer);
  if (::getsockopt(socket.number(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
    throw unreachable(reasonOf(errno));
  if (peer.uid != browser.owner || platform::parentOfProcess(peer.pid) != browser.process)
    throw unreachable("somebody else than the browser’s own relay listens there");
  std::shared_ptr<RelayConnection> connection(new RelayConnection(std::move(socket), std::move(listener)));
  connection->requireAnswer(platform::boundedBy(limits, patienceWithCalls));
  return connection;
}

RelayConnection::RelayConnection(platform::FileDescriptor socket, RelayListener listener)
    : socket_(std::move(socket)), listener_(std::move(listener)), reader_([this] { read(); }) {}

RelayConnection::~RelayConnection() {
  ::shutdown(socket_.number(), SHUT_RDWR); // wakes the reader
  reader_.join();
}

// ---------------------------------------------------------------------------------------------------------- the calls

boost::json::value RelayConnection::perform(std::string_view command, const boost::json::object& parameters,
                                            Repeat /*repeat*/, const platform::CallLimits& callLimits) {
  const platform::CallLimits limits = platform::boundedBy(callLimits, patienceWithCalls);
  const std::shared_ptr<PendingCall> call = send(command, parameters, limits);
  return valueOfHelper(await(*call, limits), parameters);
}

boost::json::value RelayConnection::await(PendingCall& call, const platform::CallLimits& limits) {
  for (;;) {
    const platform::CallLimits patience = limits.within(longestSilence);
    try {
      return call.result(patience);
    } catch (const DevToolsFailure& failure) {
      if (failure.kind() != DevToolsFault::timedOut || limits.hasPassed())
        throw;
    }
    // A page may take its time; the helper itself answers at once.
    requireAnswer(limits);
  }
}

void RelayConnection::requireAnswer(const platform::CallLimits& limits) {
  if (std::chrono::steady_clock::now() - heardAt_.load() < devtools::lately)
    return;
  const std::shared_ptr<PendingCall> question = send("ping", {}, limits);
  try {
    static_cast<void>(question->await(limits.within(longestSilence)));
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::timedOut || limits.hasPassed())
      throw;
    throw platform::failure(DevToolsFault::notAnswering,
                            fmt::format("{} seconds", std::chrono::seconds(longestSilence).count()));
  }
}

std::shared_ptr<PendingCall> RelayConnection::send(std::string_view command, const boost::json::object& parameters,
                                                   const platform::CallLimits& limits) {
  auto call = std::make_shared<PendingCall>(std::string(command));
  boost::json::object message{{"name", command}, {"parameters", parameters}};
  {
    const platform::MutexLock lock(mutex_);
    if (!isOpen_)
      throw platform::failure(DevToolsFault::lost, lossReason_);
    std::erase_if(calls_, [](const auto& entry) { return entry.second.expired(); });
    message["id"] = ++lastID_;
    calls_[lastID_] = call;
  }
  write(boost::json::serialize(message), limits);
  return call;
}

/// The relay takes what it is sent at once, so a socket that stays full says that it has stopped.
void RelayConnection::write(std::string_view message, const platform::CallLimits& limits) {
  if (message.size() > largestMessage)
    throw platform::failure(DevToolsFault::refused, "the message is too large");
  const auto length = static_cast<std::uint32_t>(message.size());
  std::string frame(reinterpret_cast<const char*>(&length), sizeof(length));
  frame += message;
  const platform::MutexLock lock(writing_);
  std::string_view rest = frame;
  while (!rest.empty()) {
    const ssize_t count = ::send(socket_.number(), rest.data(), rest.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(count));
      continue;
    }
    if (errno == EINTR)
      continue;
    if (errno != EAGAIN) {
      ::shutdown(socket_.number(), SHUT_RDWR);
      throw platform::failure(DevToolsFault::lost, reasonOf(errno));
    }
    if (limits.hasPassed() || limits.stop.stop_requested()) {
      // The rest of a frame that has begun can't be left out: the relay would take the next one for it.
      if (rest.size() < frame.size())
        ::shutdown(socket_.number(), SHUT_RDWR);
      throw platform::failure(limits.stop.stop_requested() ? DevToolsFault::stopped : DevToolsFault::timedOut,
                              "the relay takes no messages");
    }
    pollfd ready{.fd = socket_.number(), .events = POLLOUT, .revents = 0};
    ::poll(&ready, 1, static_cast<int>(std::chrono::milliseconds(writingPause).count()));
  }
  ++sent_;
}

// ---------------------------------------------------------------------------------------------------------- the reader

void RelayConnection::read() {
  std::string message;
  try {
    for (;;) {
      std::uint32_t length = 0;
      if (!readWhole(socket_.number(), reinterpret_cast<char*>(&length), sizeof(length)))
        return end("the browser has ended, or its helper was switched off");
      if (length > largestMessage)
        return end("the helper sent a message that is too large");
      message.resize(length);
      if (!readWhole(socket_.number(), message.data(), message.size()))
        return end("the browser ended in the middle of a message");
      ++received_;
      heardAt_ = std::chrono::steady_clock::now();
      take(message);
    }
  } catch (const std::exception& error) {
    end(fmt::format("the helper sent a message that isn’t understood: {}", error.what()));
  }
}

void RelayConnection::take(std::string_view message) {
  if (message.starts_with(R"({"changes":)"))
    return listener_.changed ? listener_.changed() : void();
  if (const auto probe = numberBehind(message, R"({"settled":)"))
    return listener_.settled ? listener_.settled(*probe) : void();
  // The number comes first, so that a value that can't be read fails its own call alone.
  const auto id = numberBehind(message, R"({"id":)");
  if (!id) // of a later helper
    return relayLog.debug("The helper told something that isn't known here: {}", message.substr(0, 100));
  std::shared_ptr<PendingCall> call;
  {
    const platform::MutexLock lock(mutex_);
    if (const auto found = calls_.find(*id); found != calls_.end()) {
      call = found->second.lock();
      calls_.erase(found);
    }
  }
  if (!call)
    return;
  try {
    call->complete(platform::parseJSON(message));
  } catch (const platform::Failure& failure) {
    call->fail(DevToolsFault::refused, failure.errorDescription());
  }
}

void RelayConnection::end(const std::string& reason) {
  relayLog.debug("The relay is gone: {}", reason);
  std::unordered_map<std::int64_t, std::weak_ptr<PendingCall>> calls;
  {
    const platform::MutexLock lock(mutex_);
    isOpen_ = false;
    lossReason_ = reason;
    calls.swap(calls_);
  }
  ::shutdown(socket_.number(), SHUT_RDWR); // the relay may still be there
  for (const auto& [id, weak] : calls) {
    if (const std::shared_ptr<PendingCall> call = weak.lock())
      call->fail(DevToolsFault::lost, reason);
  }
  if (listener_.changed)
    listener_.changed(); // who waits for a change learns that none will come
}

} // namespace tabwright::scripting
