#pragma once

#include "relay/Frames.h"

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

inline constexpr int patience = 30'000; // milliseconds; what takes longer won't come
inline constexpr std::size_t MiB = std::size_t{1} << 20;

inline std::string framed(std::string_view content) {
  const auto head = relay::frameHead(static_cast<std::uint32_t>(content.size()));
  return std::string(head.data(), head.size()).append(content);
}

/// A descriptor by which a test speaks in frames as a browser or a client does.
class FrameEnd {
public:
  FrameEnd(int input, int output) : input_(input), output_(output) {}
  FrameEnd(FrameEnd&& other) noexcept
      : input_(std::exchange(other.input_, -1)), output_(std::exchange(other.output_, -1)) {}
  FrameEnd& operator=(FrameEnd&&) = delete;
  ~FrameEnd() {
    closeOutput();
    if (input_ >= 0)
      ::close(input_);
  }

  /// Throws when the other side takes nothing for too long, or has closed.
  void sendBytes(std::string_view bytes) {
    while (!bytes.empty()) {
      await(output_, POLLOUT);
      const ssize_t count = ::write(output_, bytes.data(), std::min<std::size_t>(bytes.size(), 65'536));
      if (count < 0)
        throw std::runtime_error(std::string("writing: ") + std::strerror(errno));
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }
  void send(std::string_view content) { sendBytes(framed(content)); }
  void closeOutput() {
    if (output_ >= 0 && output_ != input_)
      ::close(output_);
    output_ = -1;
  }

  /// The next content; nothing once the other side has closed.
  std::optional<std::string> receive() {
    std::vector<char> buffer(std::size_t{1} << 20);
    while (received_.empty()) {
      await(input_, POLLIN);
      const ssize_t count = ::read(input_, buffer.data(), buffer.size());
      if (count <= 0) // a reset too, by which what wasn't read yet is lost
        return std::nullopt;
      frames_.feed({buffer.data(), static_cast<std::size_t>(count)},
                   [this](std::string content) { received_.push_back(std::move(content)); });
    }
    std::string first = std::move(received_.front());
    received_.erase(received_.begin());
    return first;
  }
  boost::json::object receiveJSON() { return boost::json::parse(receive().value()).as_object(); }

private:
  static void await(int descriptor, short events) {
    pollfd waited{.fd = descriptor, .events = events, .revents = 0};
    if (::poll(&waited, 1, patience) != 1)
      throw std::runtime_error("nothing comes, or is taken");
  }

  int input_;
  int output_;
  relay::FrameReader frames_;
  std::vector<std::string> received_;
};

/// A client of the relay that listens at this path.
inline FrameEnd connectedTo(const std::string& path) {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  if (socket < 0 || ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    throw std::runtime_error("connecting to " + path + ": " + std::strerror(errno));
  return {socket, socket};
}

/// The message that these pieces make, each of which must be well-formed JSON; all but the last say that more comes.
inline std::string joined(const std::vector<std::string>& pieces) {
  std::string text;
  for (std::size_t index = 0; index < pieces.size(); ++index) {
    EXPECT_LE(pieces[index].size(), relay::longestFrameForBrowser);
    const auto piece = boost::json::parse(pieces[index]).as_object();
    text += std::string_view(piece.at("text").as_string());
    EXPECT_EQ(piece.at("more").as_bool(), index + 1 < pieces.size());
  }
  return text;
}

} // namespace tabwright::testsupport
