#include "devtools/Discovery.h"
#include "devtools/PortLook.h"
#include "support/ProcessTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tabwright::devtools {

namespace {

constexpr const char* path = "/devtools/browser/a89c6591-82a3-4ae8-a189-5cba8bdcc2e9";
constexpr pid_t browser = 4242;

} // namespace

TEST(ParseActivePort, ReadsPortAndPath) {
  const Endpoint expected{37497, path};
  EXPECT_EQ(parseActivePort(std::string("37497\n") + path).value(), expected);
  EXPECT_EQ(parseActivePort(std::string("37497\n") + path + "\n").value(), expected);
  EXPECT_EQ(parseActivePort(std::string("65535\n") + path).value().port, 65535);
}

TEST(ParseActivePort, RefusesEverythingElse) {
  const std::string good = path;
  const std::vector<std::string> texts{std::string(),
                                       std::string("\n"),
                                       std::string("37497"),
                                       "37497" + good,
                                       "0\n" + good,
                                       "65536\n" + good,
                                       "-1\n" + good,
                                       "+1\n" + good,
                                       " 1\n" + good,
                                       "1 \n" + good,
                                       "01\n" + good,
                                       "0x1\n" + good,
                                       "1e3\n" + good,
                                       "\n" + good,
                                       "37497\n",
                                       "37497\n/devtools/page/a89c6591-82a3-4ae8-a189-5cba8bdcc2e9",
                                       "37497\n" + good.substr(1),
                                       "37497\n" + good + "0",
                                       "37497\n" + good.substr(0, good.size() - 1),
                                       "37497\n" + good + "\n\n",
                                       "37497\n" + good + "\r\n",
                                       "37497\r\n" + good,
                                       "37497\n\n" + good,
                                       "37497\n/devtools/browser/g89c6591-82a3-4ae8-a189-5cba8bdcc2e9",
                                       "37497\n/devtools/browser/a89c6591-82a3-4ae8-a189-5cba8bdcc2e9?x=1",
                                       "37497\n/devtools/browser/../a89c6591-82a3-4ae8-a189-5cba8bdcc2",
                                       std::string("37497\n\0", 7) + good};
  for (const std::string& text : texts) {
    const auto result = parseActivePort(text);
    ASSERT_FALSE(result) << text;
    EXPECT_EQ(result.error().fault, DiscoveryFault::malformed) << text;
  }
}

class DiscoveryTest : public testing::Test {
protected:
  DiscoveryTest() { writeFile(std::string("37497\n") + path); }

  void writeFile(const std::string& text) { std::ofstream(file(), std::ios::trunc) << text; }
  std::filesystem::path file() const { return tree_.root() / "DevToolsActivePort"; }
  auto find(uid_t owner = ::geteuid()) const { return Discovery(tree_.root()).endpoint(tree_.root(), browser, owner); }
  DiscoveryFault fault() const {
    const auto result = find();
    EXPECT_FALSE(result);
    return result ? DiscoveryFault::absent : result.error().fault;
  }

  support::ProcessTree tree_;
};

TEST_F(DiscoveryTest, BelievesAFileWhosePortIsTheBrowsers) {
  tree_.listen("tcp", "0100007F", 37497, "555");
  tree_.addSocket(browser, "555");
  EXPECT_EQ(find().value(), (Endpoint{37497, path}));
}

TEST_F(DiscoveryTest, DoesNotBelieveAPortThatIsNotTheBrowsersAlone) {
  EXPECT_EQ(fault(), DiscoveryFault::notListening);
  tree_.listen("tcp", "0200007F", 37497, "1");  // 127.0.0.2
  tree_.listen("tcp", "0100007F", 37498, "2");  // another port
  tree_.connect("tcp", "0100007F", 37497, "3"); // a connection, not a listener
  tree_.addSocket(browser, "1");
  tree_.addSocket(browser, "2");
  tree_.addSocket(browser, "3");
  EXPECT_EQ(fault(), DiscoveryFault::notListening);

  tree_.listen("tcp", "0100007F", 37497, "555");
  tree_.addSocket(4243, "555");
  EXPECT_EQ(fault(), DiscoveryFault::foreignListener);

  // Even beside the browser's own socket: either could get the connection.
  tree_.listen("tcp6", "00000000000000000000000000000000", 37497, "556");
  tree_.addSocket(browser, "556");
  EXPECT_EQ(fault(), DiscoveryFault::foreignListener);
  tree_.addSocket(browser, "555");
  EXPECT_TRUE(find());
}

TEST_F(DiscoveryTest, DoesNotBelieveAFileThatCouldBeAnybodys) {
  tree_.listen("tcp", "0100007F", 37497, "555");
  tree_.addSocket(browser, "555");
  ASSERT_TRUE(find());

  std::filesystem::rename(file(), tree_.root() / "elsewhere");
  EXPECT_EQ(fault(), DiscoveryFault::absent);
  std::filesystem::create_symlink(tree_.root() / "elsewhere", file());
  EXPECT_EQ(fault(), DiscoveryFault::untrusted);
  std::filesystem::remove(file());
  std::filesystem::create_directory(file());
  EXPECT_EQ(fault(), DiscoveryFault::untrusted);
  std::filesystem::remove(file());
  ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
  EXPECT_EQ(fault(), DiscoveryFault::untrusted) << "and does not wait for a writer";
  std::filesystem::remove(file());

  writeFile(std::string("37497\n") + path + std::string(1 << 20, 'x'));
  EXPECT_EQ(fault(), DiscoveryFault::malformed);
  if (::geteuid() == 0) { // only root can give a file away
    writeFile(std::string("37497\n") + path);
    ASSERT_EQ(::chown(file().c_str(), 12345, 12345), 0);
    EXPECT_EQ(fault(), DiscoveryFault::untrusted);
    EXPECT_TRUE(find(12345)) << "unless the browser is that user's";
  }
}

TEST(LookAtPort, TellsAFrozenBrowserFromOneThatSpeaksHTTPOrDoesNot) {
  using namespace std::chrono_literals;
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), length), 0);
  ASSERT_EQ(::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length), 0);
  const auto port = ntohs(address.sin_port);
  EXPECT_EQ(lookAtPort(port, 10s), PortAnswer::other); // nobody listens yet
  ASSERT_EQ(::listen(listener, 4), 0);
  EXPECT_EQ(lookAtPort(port, 50ms), PortAnswer::silence);
  ::close(::accept(listener, nullptr, nullptr)); // the one that was not answered
  for (const auto& [answer, expected] : {std::pair(std::string("HTTP/1.1 404"), PortAnswer::http),
                                         std::pair(std::string("SSH-2.0"), PortAnswer::other)}) {
    std::thread answering([&] {
      const int socket = ::accept(listener, nullptr, nullptr);
      static_cast<void>(::send(socket, answer.data(), answer.size(), MSG_NOSIGNAL));
      char question[16];
      while (::recv(socket, question, sizeof question, 0) > 0) {
      }
      ::close(socket);
    });
    EXPECT_EQ(lookAtPort(port, 10s), expected);
    answering.join();
  }
  ::close(listener);
}

} // namespace tabwright::devtools
