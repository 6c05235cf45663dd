#include "app/Composition.h"
#include "app/HostServer.h"
#include "support/ScratchFolder.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace tabwright::app {
namespace {

namespace asio = boost::asio;

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

int listenAt(const std::string& path) {
  const sockaddr_un address = addressOf(path);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(::listen(socket, 8), 0);
  return socket;
}

int connectTo(const std::string& path) {
  const sockaddr_un address = addressOf(path);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
    return socket;
  ::close(socket);
  return -1;
}

TEST(HostServer, LeavesNobodyWhomItServes) {
  const testsupport::ScratchFolder scratch;
  const std::string path = (scratch / "host.socket").string();
  const Composition composition;
  asio::thread_pool pool(1);
  asio::io_context loop;
  auto work = asio::make_work_guard(loop);
  std::promise<void> retired;
  HostServer server({.mainActor = loop.get_executor(),
                     .pool = pool.get_executor(),
                     .catalogue = composition.catalogue(),
                     .version = "1.0",
                     .retired = [&] { retired.set_value(); }},
                    {.socket = platform::FileDescriptor(listenAt(path)), .lock = {}, .path = path});
  server.open();
  const std::jthread running([&] { loop.run(); });

  const int speaking = connectTo(path);
  const int silent = connectTo(path);
  constexpr std::string_view ping = "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}\n";
  ASSERT_EQ(::send(speaking, ping.data(), ping.size(), MSG_NOSIGNAL), static_cast<ssize_t>(ping.size()));
  char bytes[256];
  ASSERT_GT(::recv(speaking, bytes, sizeof bytes, 0), 0);

  asio::post(loop, [&] { server.leave(); });
  EXPECT_EQ(::recv(silent, bytes, sizeof bytes, 0), 0); // the end of the connection
  EXPECT_EQ(connectTo(path), -1);
  std::future<void> end = retired.get_future();
  EXPECT_EQ(end.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
  ASSERT_EQ(::send(speaking, ping.data(), ping.size(), MSG_NOSIGNAL), static_cast<ssize_t>(ping.size()));
  EXPECT_GT(::recv(speaking, bytes, sizeof bytes, 0), 0);

  ::close(speaking);
  ::close(silent);
  end.wait();
  std::promise<void> closed;
  asio::post(loop, [&] { server.close([&] { closed.set_value(); }); });
  closed.get_future().wait();
  work.reset();
  loop.stop();
}

} // namespace
} // namespace tabwright::app
