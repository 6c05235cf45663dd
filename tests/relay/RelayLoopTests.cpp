// The loop between a browser that is two pipes and clients at a real socket.
#include "RelayEnds.h"
#include "relay/RelayLoop.h"
#include "support/ScratchFolder.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>

namespace tabwright::relay {
namespace {

using testsupport::connectedTo;
using testsupport::FrameEnd;
using testsupport::joined;
using testsupport::MiB;

constexpr int nobody = 65'534;

struct Pipe {
  Pipe(int relaysEnd, bool isRead) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
      throw std::runtime_error("no pipe");
    relays = ends[isRead ? 0 : 1];
    other = ends[isRead ? 1 : 0];
    ::fcntl(relays, F_SETFL, relaysEnd);
  }
  ~Pipe() { ::close(relays); }
  int relays;
  int other;
};

class RelayLoopTest : public testing::Test {
protected:
  RelayLoopTest() {
    std::signal(SIGPIPE, SIG_IGN);
    thread_ = std::jthread([this] {
      try {
        RelayLoop({.fromBrowser = toRelay_.relays,
                   .toBrowser = fromRelay_.relays,
                   .listening = socket_.descriptor(),
                   .stop = stop_.relays})
            .run();
      } catch (const RelayFailure& failure) {
        failure_ = failure.what();
      }
    });
  }
  ~RelayLoopTest() override {
    browser_.closeOutput();
    ::close(stop_.other);
  }

  [[nodiscard]] std::string path() const { return (folder_ / "relay/1.sock").string(); }
  FrameEnd client() { return connectedTo(path()); }
  /// As the helper answers.
  void answer(ClientNumber client, std::string_view message) {
    browser_.send(R"({"client":)" + std::to_string(client) + R"(,"message":)" + std::string(message) + "}");
  }
  /// The next whole message that comes to the browser, and whose it is.
  std::pair<ClientNumber, std::string> receiveMessage() {
    std::vector<std::string> pieces;
    for (;;) {
      pieces.push_back(browser_.receive().value());
      const auto piece = boost::json::parse(pieces.back()).as_object();
      if (!piece.at("more").as_bool())
        return {piece.at("client").to_number<ClientNumber>(), joined(pieces)};
    }
  }
  /// The client's number, which it has once the relay has taken a message of it.
  ClientNumber introduce(FrameEnd& client) {
    client.send("0");
    return receiveMessage().first;
  }
  void expectGone(ClientNumber client) {
    EXPECT_EQ(browser_.receive().value(), R"({"client":)" + std::to_string(client) + R"(,"gone":true})");
  }
  /// What the loop failed with; empty when it ended in order.
  std::string end() {
    thread_.join();
    return failure_;
  }

  const testsupport::ScratchFolder folder_{"/tmp"}; // to which others find a way
  RelaySocket socket_{(folder_ / "relay").string(), 1};
  Pipe toRelay_{O_NONBLOCK, true};
  Pipe fromRelay_{O_NONBLOCK, false};
  Pipe stop_{O_NONBLOCK, true};
  FrameEnd browser_{fromRelay_.other, toRelay_.other};
  std::string failure_;
  std::jthread thread_;
};

TEST_F(RelayLoopTest, CarriesMessagesOfAnyLengthBothWays) {
  FrameEnd one = client();
  const ClientNumber number = introduce(one);
  for (const std::size_t length : {std::size_t{2}, MiB - 1, MiB, MiB + 1, 60'000'000uz}) {
    const std::string message = '"' + std::string(length - 2, 'x') + '"';
    std::jthread sender([&] { one.send(message); });
    EXPECT_TRUE(receiveMessage() == std::pair(number, message)) << length;
    sender.join();
    sender = std::jthread([&] { answer(number, message); });
    EXPECT_TRUE(one.receive() == message) << length;
  }
}

TEST_F(RelayLoopTest, GivesEachClientWhatIsItsOwn) {
  FrameEnd one = client();
  FrameEnd two = client();
  const ClientNumber first = introduce(one);
  const ClientNumber second = introduce(two);
  EXPECT_NE(first, second);
  answer(second, "2");
  answer(everyone, R"({"changes":"1"})");
  answer(first, "1");
  answer(99, "9"); // has left
  EXPECT_EQ(one.receive(), R"({"changes":"1"})");
  EXPECT_EQ(one.receive(), "1");
  EXPECT_EQ(two.receive(), "2");
  EXPECT_EQ(two.receive(), R"({"changes":"1"})");
}

TEST_F(RelayLoopTest, ClosesOnlyTheClientThatSendsRubbish) {
  FrameEnd good = client();
  const ClientNumber number = introduce(good);
  for (const std::string& rubbish : {std::string("\xff\xff\xff\xff"), testsupport::framed("\"\xff")}) {
    FrameEnd bad = client();
    const ClientNumber badNumber = introduce(bad);
    bad.sendBytes(rubbish);
    EXPECT_EQ(bad.receive(), std::nullopt);
    expectGone(badNumber);
  }
  good.send("1");
  EXPECT_EQ(receiveMessage(), std::pair(number, std::string("1")));
}

TEST_F(RelayLoopTest, TellsTheHelperOfAClientThatLeavesWithinAMessage) {
  ClientNumber number = everyone;
  {
    FrameEnd silent = client(); // of which the helper never hears
    FrameEnd one = client();
    number = introduce(one);
    one.sendBytes(testsupport::framed("12345").substr(0, 6));
    const auto piece = browser_.receiveJSON();
    EXPECT_EQ(piece.at("text"), "12");
    EXPECT_TRUE(piece.at("more").as_bool());
  }
  expectGone(number);
  FrameEnd next = client();
  EXPECT_GT(introduce(next), number);
}

TEST_F(RelayLoopTest, GivesUpAClientThatNeverReadsAndServesTheOthers) {
  FrameEnd silent = client();
  FrameEnd reading = client();
  const ClientNumber silentNumber = introduce(silent);
  const ClientNumber readingNumber = introduce(reading);
  const std::string message = '"' + std::string(64 * MiB, 'x') + '"';
  // Four wait, the fifth is one too many.
  for (int count = 0; count < 5; ++count) {
    answer(silentNumber, message);
    answer(readingNumber, "1");
    EXPECT_EQ(reading.receive(), "1");
  }
  expectGone(silentNumber);
}

TEST_F(RelayLoopTest, DoesNotReadClientsWhileTheBrowserTakesNothing) {
  FrameEnd one = client();
  const ClientNumber number = introduce(one);
  const std::string message = '"' + std::string(20 * MiB, 'x') + '"';
  std::jthread sender([&] { one.send(message); });
  FrameEnd two = client();
  answer(everyone, "1"); // is delivered all the same
  EXPECT_EQ(one.receive(), "1");
  EXPECT_TRUE(receiveMessage() == std::pair(number, message));
}

TEST_F(RelayLoopTest, ClosesOneClientTooMany) {
  std::vector<FrameEnd> clients;
  for (std::size_t count = 0; count < RelayLoop::mostClients; ++count) {
    clients.push_back(client());
    introduce(clients.back());
  }
  EXPECT_EQ(client().receive(), std::nullopt);
  clients.pop_back();
  expectGone(RelayLoop::mostClients);
  FrameEnd next = client();
  EXPECT_EQ(introduce(next), RelayLoop::mostClients + 1);
}

TEST_F(RelayLoopTest, LetsNobodyElseIn) {
  EXPECT_EQ(std::filesystem::status(folder_ / "relay").permissions(), std::filesystem::perms::owner_all);
  struct stat facts{};
  ASSERT_EQ(::stat(path().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777U, 0600U);
  if (::geteuid() != 0)
    GTEST_SKIP() << "only root can be somebody else";
  // With the doors open, who comes is still looked at.
  for (const auto& place : {folder_.path(), folder_ / "relay", std::filesystem::path(path())})
    std::filesystem::permissions(place, std::filesystem::perms::all);
  const std::string place = path();
  const pid_t other = ::fork();
  if (other == 0) {
    enum Outcome { closed, notConnected, notClosed };
    if (::setresuid(nobody, nobody, nobody) != 0)
      ::_exit(notConnected);
    try {
      FrameEnd end = connectedTo(place);
      ::_exit(end.receive() ? notClosed : closed);
    } catch (const std::exception&) {
      ::_exit(notConnected);
    }
  }
  int status = 0;
  ASSERT_EQ(::waitpid(other, &status, 0), other);
  EXPECT_EQ(status, 0);
}

TEST_F(RelayLoopTest, EndsInOrderWithTheBrowser) {
  FrameEnd one = client();
  introduce(one);
  browser_.closeOutput();
  EXPECT_EQ(end(), "");
  EXPECT_EQ(one.receive(), std::nullopt);
}

TEST_F(RelayLoopTest, EndsInOrderWhenItIsStopped) {
  FrameEnd one = client();
  introduce(one);
  ASSERT_EQ(::write(stop_.other, "x", 1), 1);
  EXPECT_EQ(end(), "");
  EXPECT_EQ(one.receive(), std::nullopt);
}

TEST_F(RelayLoopTest, EndsWithASentenceWhenTheBrowserBreaksOffOrSendsRubbish) {
  FrameEnd one = client();
  introduce(one);
  browser_.send("{}");
  EXPECT_EQ(end(), "The browser doesn’t speak as agreed: a message is not of the form {\"client\":N,\"message\":…}");
  EXPECT_EQ(one.receive(), std::nullopt);
}

TEST_F(RelayLoopTest, EndsAtALengthThatNobodyMeans) {
  browser_.sendBytes("\xff\xff\xff\xff");
  EXPECT_EQ(end(), "The browser doesn’t speak as agreed: a frame of 4294967295 bytes is announced, and the longest has "
                   "268435456");
}

TEST_F(RelayLoopTest, SaysThatTheBrowserEndedWithinAMessage) {
  browser_.sendBytes(testsupport::framed(R"({"client":0,"message":1})").substr(0, 9));
  browser_.closeOutput();
  EXPECT_EQ(end(), "The browser ended within a message");
}

} // namespace
} // namespace tabwright::relay
