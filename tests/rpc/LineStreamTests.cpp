// Line streams over real pipes and sockets.
#include "rpc/LineStream.h"
#include "support/RunTask.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

namespace asio = boost::asio;
using tabwright::platform::Task;
using tabwright::rpc::LineStream;
using tabwright::testsupport::runTask;

constexpr LineStream::Bounds smallBounds{.message = 100, .skipped = 1000, .unread = std::size_t{1} << 20};

/// A connected pair of sockets: one for the stream, one for the test.
struct Sockets {
  int stream = -1;
  int test = -1;

  Sockets() {
    ::signal(SIGPIPE, SIG_IGN);
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
      throw std::runtime_error("no sockets");
    stream = ends[0];
    test = ends[1];
  }
  ~Sockets() { hangUp(); }
  void hangUp() {
    if (test >= 0)
      ::close(test);
    test = -1;
  }
  void write(std::string_view bytes) const {
    ASSERT_EQ(::write(test, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  [[nodiscard]] LineStream lineStream(const asio::any_io_executor& executor, LineStream::Bounds bounds = smallBounds) {
    return {executor, stream, ::dup(stream), bounds};
  }
};

/// The messages that the stream makes of the bytes when they come in pieces of that size, and then end: each message as
/// JSON, each error as its code, and the id that it answers where one could be told.
std::vector<std::string> received(std::string_view bytes, std::size_t pieceSize) {
  Sockets sockets;
  std::vector<std::string> messages;
  std::thread writer([&] {
    for (std::size_t at = 0; at < bytes.size(); at += pieceSize)
      sockets.write(bytes.substr(at, pieceSize));
    sockets.hangUp();
  });
  const auto reading = [&]() -> Task<void> {
    LineStream stream = sockets.lineStream(co_await asio::this_coro::executor);
    while (auto message = co_await stream.receive()) {
      if (!*message) {
        const auto& [error, envelope] = message->error();
        messages.push_back(std::to_string(error.code()) +
                           (envelope.id.is_null() ? "" : " " + boost::json::serialize(envelope.id)));
      } else {
        messages.push_back(boost::json::serialize(**message));
      }
    }
  };
  runTask(reading());
  writer.join();
  return messages;
}

TEST(LineStreamTests, cutsBytesIntoMessages) {
  const std::string tooLong = R"({"long":")" + std::string(300, 'x') + "\"}\n";
  const std::string deep = std::string(600, '[') + "\n";
  const std::string longest = "\"" + std::string(98, 'y') + "\"";
  const std::string bytes = "{\"a\":1}\n\n  \r\n[2]\r\n{\"broken\n\xff\xfe\n" + tooLong + "3 4\n" + deep + longest +
                            "\n\"ä\xf0\x9f\x90\x8b\"\n\"half a message";
  const std::vector<std::string> expected{
      R"({"a":1})", "[2]", "-32700", "-32700", "-32600", "-32700", "-32600", longest, "\"ä\xf0\x9f\x90\x8b\""};
  for (const std::size_t pieceSize : {std::size_t{1}, std::size_t{7}, std::size_t{99}, bytes.size()})
    EXPECT_EQ(received(bytes, pieceSize), expected) << "in pieces of " << pieceSize;
}

TEST(LineStreamTests, tellsWhichRequestCouldNotBeRead) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {R"({"jsonrpc":"2.0", "id" : 7 ,"method":"m","params":{"a":"\ud800"}})", "-32700 7"},
      {R"({"params":{"id":1,"b":["\"id\":2", {"id":3}],"a":"\udc00"},"method":"m","id":"x,}"})", "-32700 \"x,}\""},
      {R"({"id":"\ud800","method":"m"})", "-32700"},
      {R"({"id":{"id":1},"method":"\ud800"})", "-32700"},
      {R"([{"id":1,"method":"\ud800"}])", "-32700"},
      {R"({"id":12)", "-32700"},
      {R"({"id":4,"long":")" + std::string(300, 'x') + "\"}", "-32600 4"},
  };
  for (const auto& [line, answer] : rows)
    EXPECT_EQ(received(line + "\n", 20), std::vector{answer}) << line;
}

TEST(LineStreamTests, refusesNestingBeyondItsBound) {
  const auto nested = [](std::size_t levels) { return std::string(levels, '[') + std::string(levels, ']') + "\n"; };
  Sockets sockets;
  sockets.write(nested(512) + nested(513) + "1\n");
  const auto reading = [&]() -> Task<void> {
    LineStream stream = sockets.lineStream(co_await asio::this_coro::executor, {});
    EXPECT_TRUE((co_await stream.receive())->has_value());
    EXPECT_FALSE((co_await stream.receive())->has_value());
    EXPECT_EQ((co_await stream.receive())->value(), 1);
  };
  runTask(reading());
}

TEST(LineStreamTests, refusesALineThatNeverEndsBeforeItsEnd) {
  Sockets sockets;
  sockets.write(std::string(200, 'x'));
  const auto reading = [&]() -> Task<void> {
    LineStream stream = sockets.lineStream(co_await asio::this_coro::executor);
    EXPECT_FALSE((co_await stream.receive())->has_value());
    sockets.write(std::string(200, 'x') + "\n5\n");
    EXPECT_EQ((co_await stream.receive())->value(), 5);
    sockets.write(std::string(200, 'x'));
    EXPECT_FALSE((co_await stream.receive())->has_value());
    sockets.write(std::string(2000, 'x'));
    EXPECT_FALSE((co_await stream.receive()).has_value()); // nobody reads on for ever
  };
  runTask(reading());
}

TEST(LineStreamTests, carriesLargeMessagesBothWaysInOrder) {
  const std::string large(std::size_t{5} << 20, 'z');
  Sockets sockets;
  const int test = std::exchange(sockets.test, -1);
  const auto answering = [&](asio::any_io_executor executor) -> Task<void> {
    LineStream stream(executor, test, ::dup(test));
    while (auto message = co_await stream.receive())
      stream.send(message->value());
  };
  const auto asking = [&]() -> Task<void> {
    const auto executor = co_await asio::this_coro::executor;
    LineStream stream = sockets.lineStream(executor, {});
    asio::co_spawn(executor, answering(executor), asio::detached);
    for (int index = 0; index < 4; ++index)
      stream.send(boost::json::array{index, large});
    for (int index = 0; index < 4; ++index) {
      const auto message = co_await stream.receive();
      EXPECT_EQ(message->value().at(0), index);
      EXPECT_EQ(message->value().at(1).as_string().size(), large.size());
    }
  };
  runTask(asking());
}

TEST(LineStreamTests, givesUpAPeerThatNeverReads) {
  Sockets sockets;
  const auto writing = [&]() -> Task<void> {
    LineStream stream = sockets.lineStream(co_await asio::this_coro::executor);
    const std::string text(std::size_t{100} << 10, 'x');
    for (int count = 0; count < 40; ++count)
      stream.send(boost::json::value(text));
    EXPECT_FALSE((co_await stream.receive()).has_value());
    co_await stream.flush(std::chrono::hours(1)); // nothing to wait for any more
  };
  runTask(writing());
}

TEST(LineStreamTests, flushesWhatIsQueued) {
  Sockets sockets;
  const std::string text(std::size_t{2} << 20, 'x');
  std::string read;
  std::thread reader;
  const auto writing = [&]() -> Task<void> {
    LineStream stream = sockets.lineStream(co_await asio::this_coro::executor, {});
    stream.send(boost::json::value(text));
    co_await stream.flush(std::chrono::milliseconds(1)); // returns though nobody reads
    reader = std::thread([&] {
      std::array<char, 4096> chunk{};
      for (ssize_t count = 0; (count = ::read(sockets.test, chunk.data(), chunk.size())) > 0;)
        read.append(chunk.data(), static_cast<std::size_t>(count));
    });
    co_await stream.flush(std::chrono::hours(1));
  };
  runTask(writing());
  reader.join();
  EXPECT_EQ(read, "\"" + text + "\"\n");
}

TEST(LineStreamTests, endsWhenTheReaderIsGoneAndPutsTheModeBack) {
  std::array<int, 2> input{};
  std::array<int, 2> output{};
  ::signal(SIGPIPE, SIG_IGN);
  ASSERT_EQ(::pipe2(input.data(), O_CLOEXEC), 0);
  ASSERT_EQ(::pipe2(output.data(), O_CLOEXEC), 0);
  const int shared = ::dup(output[1]); // as a shell shares its terminal
  const auto writing = [&]() -> Task<void> {
    LineStream stream(co_await asio::this_coro::executor, input[0], output[1]);
    stream.send(1);
    EXPECT_NE(::fcntl(shared, F_GETFL) & O_NONBLOCK, 0) << "or this test shows nothing";
    ::close(output[0]);
    stream.send(2);
    co_await stream.flush(std::chrono::hours(1));
    EXPECT_FALSE((co_await stream.receive()).has_value());
  };
  runTask(writing());
  EXPECT_EQ(::fcntl(shared, F_GETFL) & O_NONBLOCK, 0);
  ::close(shared);
  ::close(input[1]);
}

} // namespace
