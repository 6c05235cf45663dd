// The program as a browser starts it: its streams, its socket's life, its ends.
#include "RelayEnds.h"
#include "support/ScratchFolder.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>

namespace tabwright::relay {
namespace {

using testsupport::connectedTo;
using testsupport::FrameEnd;

class Relay {
public:
  /// One whose sockets lie below the folder `session`, which says what it has to say in the file `words`.
  Relay(const std::filesystem::path& session, const std::filesystem::path& words) : words_(words) {
    int in[2];
    int out[2];
    if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0)
      throw std::runtime_error("no pipes");
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, words.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    std::string runtime = "XDG_RUNTIME_DIR=" + session.string();
    std::string program = TABWRIGHT_RELAY;
    char* arguments[]{program.data(), nullptr};
    char* environment[]{runtime.data(), nullptr};
    if (::posix_spawn(&process_, TABWRIGHT_RELAY, &files, nullptr, arguments, environment) != 0)
      throw std::runtime_error("no relay");
    posix_spawn_file_actions_destroy(&files);
    ::close(in[0]);
    ::close(out[1]);
    browser_.emplace(out[0], in[1]);
    socket_ = session / "tabwright/relay" / (std::to_string(process_) + ".sock");
  }
  ~Relay() {
    if (process_ > 0)
      static_cast<void>(end(SIGKILL));
  }
  Relay(const Relay&) = delete;
  Relay& operator=(const Relay&) = delete;

  [[nodiscard]] FrameEnd& browser() { return *browser_; }
  [[nodiscard]] const std::filesystem::path& socket() const { return socket_; }
  /// A client that the relay has taken.
  [[nodiscard]] FrameEnd client() {
    for (;;) {
      try {
        FrameEnd client = connectedTo(socket_.string());
        client.send("0");
        static_cast<void>(browser().receiveJSON());
        return client;
      } catch (const std::runtime_error&) {
        if (::kill(process_, 0) != 0 || ++attempts_ > testsupport::patience)
          throw;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    }
  }
  /// What it exits with after this signal (0: none), or the negative number of the signal that has ended it.
  [[nodiscard]] int end(int signal = 0) {
    if (signal != 0)
      ::kill(process_, signal);
    int status = 0;
    ::waitpid(std::exchange(process_, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  [[nodiscard]] std::string words() const { return testsupport::ScratchFolder::content(words_); }

private:
  std::filesystem::path words_;
  std::filesystem::path socket_;
  pid_t process_ = 0;
  std::optional<FrameEnd> browser_;
  int attempts_ = 0;
};

std::set<std::string> namesIn(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.insert(entry.path().filename().string());
  return names;
}

class RelayProgramTest : public testing::Test {
protected:
  [[nodiscard]] std::filesystem::path sockets() const { return session_ / "tabwright/relay"; }
  [[nodiscard]] std::filesystem::path words(int number = 1) const { return logs_ / std::to_string(number); }

  const testsupport::ScratchFolder session_;
  const testsupport::ScratchFolder logs_;
};

TEST_F(RelayProgramTest, LeavesNothingWhenItIsToldToEndOrItsBrowserEnds) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, 0}) {
    Relay relay(session_.path(), words());
    FrameEnd client = relay.client();
    if (signal == 0)
      relay.browser().closeOutput();
    EXPECT_EQ(relay.end(signal), EXIT_SUCCESS) << signal;
    EXPECT_EQ(client.receive(), std::nullopt);
    EXPECT_EQ(namesIn(sockets()), std::set<std::string>{});
    EXPECT_EQ(relay.words(), "");
  }
}

TEST_F(RelayProgramTest, RemovesWhatAKilledOneHasLeftAndNothingElse) {
  Relay living(session_.path(), words(1));
  FrameEnd before = living.client();
  std::filesystem::path left;
  {
    Relay killed(session_.path(), words(2));
    static_cast<void>(killed.client());
    left = killed.socket();
    EXPECT_EQ(killed.end(SIGKILL), -SIGKILL);
    EXPECT_TRUE(std::filesystem::exists(left));
  }
  Relay next(session_.path(), words(3));
  static_cast<void>(next.client());
  EXPECT_FALSE(std::filesystem::exists(left));
  // Those before are served as they were.
  before.send("1");
  EXPECT_EQ(living.browser().receiveJSON().at("text"), "1");
  static_cast<void>(living.client());
}

TEST_F(RelayProgramTest, SaysWhyItEndsAndLeavesNothing) {
  {
    Relay relay(session_.path(), words());
    static_cast<void>(relay.client());
    relay.browser().send("rubbish");
    EXPECT_EQ(relay.end(), EXIT_FAILURE);
    EXPECT_EQ(relay.words(), "tabwright-relay: The browser doesn’t speak as agreed: a message is not of the form "
                             "{\"client\":N,\"message\":…}.\n");
    EXPECT_EQ(namesIn(sockets()), std::set<std::string>{});
  }
  std::filesystem::permissions(sockets(), std::filesystem::perms::all);
  Relay relay(session_.path(), words());
  EXPECT_EQ(relay.end(), EXIT_FAILURE);
  EXPECT_EQ(relay.words(), "tabwright-relay: The folder " + sockets().string() + " is open to others.\n");
}

} // namespace
} // namespace tabwright::relay
