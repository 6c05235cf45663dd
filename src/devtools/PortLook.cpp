// A plain socket that never blocks, under one deadline for connecting and for the first five bytes. A websocket would
// have the browser make a session, or ask its user for permission; the question that is asked here it answers by
// itself.
#include "devtools/PortLook.h"

#include "platform/linux/FileDescriptor.h"

#include <fmt/core.h>

#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>

namespace tabwright::devtools {
namespace {

using Clock = std::chrono::steady_clock;

bool isReadyFor(short events, int socket, Clock::time_point deadline) {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd wanted{.fd = socket, .events = events, .revents = 0};
    const int ready = ::poll(&wanted, 1, left > 0 ? static_cast<int>(left) : 0);
    // A signal isn't the other side's silence: the wait goes on for the time that is left.
    if (ready >= 0 || errno != EINTR)
      return ready > 0;
  }
}

} // namespace

PortAnswer lookAtPort(std::uint16_t port, std::chrono::milliseconds patience) {
  const Clock::time_point deadline = Clock::now() + patience;
  const platform::FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket.isOpen())
    return PortAnswer::other;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 &&
      errno != EINPROGRESS)
    return PortAnswer::other;
  const std::string question =
      fmt::format("GET /json/version HTTP/1.1\r\nHost: 127.0.0.1:{}\r\nConnection: close\r\n\r\n", port);
  if (!isReadyFor(POLLOUT, socket.number(), deadline))
    return PortAnswer::silence;
  // A refused connection comes out here: its socket counts as writable, and sending gives the error.
  if (::send(socket.number(), question.data(), question.size(), MSG_NOSIGNAL) < 0)
    return PortAnswer::other;
  constexpr std::string_view mark = "HTTP/";
  std::string answer;
  while (answer.size() < mark.size()) {
    if (!isReadyFor(POLLIN, socket.number(), deadline))
      return PortAnswer::silence;
    char buffer[64];
    const ssize_t count = ::recv(socket.number(), buffer, sizeof buffer, 0);
    if (count <= 0)
      return PortAnswer::other;
    answer.append(buffer, static_cast<std::size_t>(count));
  }
  return answer.starts_with(mark) ? PortAnswer::http : PortAnswer::other;
}

} // namespace tabwright::devtools
