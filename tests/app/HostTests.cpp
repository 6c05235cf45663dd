#include "client/HostProtocol.h"
#include "support/CommandRun.h"
#include "support/HostSurroundings.h"
#include "support/ScratchFolder.h"

#include <boost/json/array.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

/// The thin client and the background host as processes. Each test has surroundings of its own, so hosts of its own.
namespace tabwright::app {
namespace {

namespace fs = std::filesystem;
namespace json = boost::json;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using testsupport::CommandOutcome;

class HostTest : public ::testing::Test {
protected:
  ~HostTest() override {
    for (const pid_t host : hosts())
      ::kill(host, SIGKILL);
  }

  [[nodiscard]] CommandOutcome run(std::vector<std::string> words, const std::string& input = {}) const {
    words.insert(words.begin(), "run");
    return testsupport::runProgram(TABWRIGHT_TEST_CLIENT, words, input, environment);
  }

  /// The processes that run as hosts in these surroundings and haven't ended.
  [[nodiscard]] std::set<pid_t> hosts() const {
    std::set<pid_t> found;
    for (const auto& process : fs::directory_iterator("/proc")) {
      const std::string name = process.path().filename();
      if (name.find_first_not_of("0123456789") != std::string::npos)
        continue;
      std::ifstream file(process.path() / "cmdline", std::ios::binary);
      std::ostringstream text; // an iterator would throw for a process that ends now
      text << file.rdbuf();
      const std::string line = text.str();
      if (line.find(scratch.path().string()) != std::string::npos &&
          line.find(client::handover::command) != std::string::npos)
        found.insert(std::stoi(name));
    }
    return found;
  }

  /// Until `condition` holds; the test's own time limit ends what never comes.
  template <class Condition>
  static void eventually(Condition condition) {
    while (!condition())
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  testsupport::ScratchFolder scratch;
  std::map<std::string, std::string> environment = testsupport::hostSurroundings(scratch);
};

/// A connection to the host as any program may make it.
class RawConnection {
public:
  explicit RawConnection(const testsupport::ScratchFolder& scratch) {
    for (const auto& entry : fs::directory_iterator(scratch / "run/tabwright")) {
      if (entry.path().extension() != ".socket")
        continue;
      sockaddr_un address{};
      address.sun_family = AF_UNIX;
      entry.path().string().copy(address.sun_path, sizeof address.sun_path - 1);
      socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
      if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return;
    }
    ADD_FAILURE() << "no socket to connect to";
  }
  ~RawConnection() { ::close(socket_); }
  RawConnection(const RawConnection&) = delete;
  RawConnection& operator=(const RawConnection&) = delete;

  /// False when the host has ended the connection.
  bool write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count <= 0)
        return false;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

  /// The next line that is an answer; nothing when the host has ended the connection.
  std::optional<json::object> answer() {
    char bytes[4096];
    for (;;) {
      for (std::size_t end = 0; (end = held_.find('\n')) != std::string::npos;) {
        const json::object message = json::parse(held_.substr(0, end)).as_object();
        held_.erase(0, end + 1);
        if (message.contains("id"))
          return message;
      }
      const ssize_t count = ::recv(socket_, bytes, sizeof bytes, 0);
      if (count <= 0)
        return std::nullopt;
      held_.append(bytes, static_cast<std::size_t>(count));
    }
  }

  std::int64_t errorOf(std::string_view line) {
    write(line);
    const auto message = answer();
    return message && message->contains("error") ? message->at("error").at("code").as_int64() : 0;
  }

private:
  int socket_ = -1;
  std::string held_;
};

std::string runRequest(int id, const std::string& version, const std::vector<std::string>& words) {
  return json::serialize(json::value{{"jsonrpc", "2.0"},
                                     {"id", id},
                                     {"method", client::protocol::run},
                                     {"params",
                                      {{"version", version},
                                       {"arguments", json::value_from(words)},
                                       {"directory", "/"},
                                       {"terminal", {{"input", false}, {"output", false}, {"width", 80}}}}}}) +
         "\n";
}

TEST_F(HostTest, DoesWhatAProcessOfItsOwnDoes) {
  for (std::vector<std::string> words : std::initializer_list<std::vector<std::string>>{
           {"GetBrowserReference", "--targetContext", "chromium"},
           {"GetBrowserReference", "--targetContext", "netscape"},
           {"ClickElement", "--help"},
           {"ClickElement"},
           {"CloseTab", "--tabSelection", "specificTab", "--targetTab", "[\"vivaldi:1\", 5]", "--each"},
           {"--each", "CloseTab", "--tabSelection", "specificTab", "--targetTab", "[5]", "--json"},
           {"--save-files", "x", "--json", "CloseTab", "--targetTab", "5"},
           {"ClickElement", "--json"},
           {"ClickElement", "--cssSelector", "a", "--targetTab", "@missing.json", "--tabSelection", "specificTab"},
           {"NoSuchAction"}}) {
    const CommandOutcome hosted = run(words);
    words.push_back("--no-host");
    const CommandOutcome alone = run(words);
    EXPECT_EQ(hosted.exitCode, alone.exitCode) << words.front();
    EXPECT_EQ(hosted.output, alone.output) << words.front();
    EXPECT_EQ(hosted.errors, alone.errors) << words.front();
  }
  EXPECT_EQ(hosts().size(), 1U);
}

TEST_F(HostTest, ReadsTheCallersStandardInputAndFiles) {
  std::ofstream(scratch / "tab.json") << "{\"fullID\": 5}";
  const std::vector<std::string> words = {"CloseTab", "--tabSelection", "specificTab", "--targetTab"};
  auto fromFile = words;
  fromFile.push_back("@" + (scratch / "tab.json").string());
  EXPECT_THAT(run(fromFile).errors, HasSubstr("lacks the property targetContext"));
  auto fromInput = words;
  fromInput.emplace_back("-");
  EXPECT_THAT(run(fromInput, "{\"fullID\": 5}").errors, HasSubstr("lacks the property targetContext"));
}

TEST_F(HostTest, IsOneForACrowdOfFirstCallersAndAnswersEachItsOwn) {
  constexpr int callers = 64;
  std::vector<CommandOutcome> outcomes(callers);
  std::vector<std::thread> threads;
  for (int caller = 0; caller < callers; ++caller)
    threads.emplace_back(
        [&, caller] { outcomes[static_cast<std::size_t>(caller)] = run({"Action" + std::to_string(caller)}); });
  for (std::thread& thread : threads)
    thread.join();
  for (int caller = 0; caller < callers; ++caller) {
    const CommandOutcome& outcome = outcomes[static_cast<std::size_t>(caller)];
    EXPECT_EQ(outcome.exitCode, 2) << outcome.errors;
    EXPECT_THAT(outcome.errors, HasSubstr("“Action" + std::to_string(caller) + "”"));
  }
  EXPECT_EQ(hosts().size(), 1U);
}

TEST_F(HostTest, IsStartedAgainAfterItWasKilled) {
  static_cast<void>(run({"NoSuchAction"}));
  const std::set<pid_t> first = hosts();
  ASSERT_EQ(first.size(), 1U);
  ::kill(*first.begin(), SIGKILL);
  eventually([&] { return !hosts().contains(*first.begin()); });
  const std::string ofTheEnd = "The background host ended unexpectedly the last time; its log may tell why.";
  EXPECT_THAT(run({"NoSuchAction"}).errors, StartsWith("tabwright: " + ofTheEnd + "\ntabwright: There is no action"));
  EXPECT_THAT(run({"NoSuchAction"}).errors, StartsWith("tabwright: There is no action")); // it is told once
  EXPECT_EQ(hosts().size(), 1U);

  ::kill(*hosts().begin(), SIGKILL);
  eventually([&] { return hosts().empty(); });
  const std::string errors = run({"NoSuchAction", "--json"}).errors;
  EXPECT_EQ(json::parse(errors.substr(0, errors.find('\n'))).at("message").as_string(), ofTheEnd);

  ::kill(*hosts().begin(), SIGTERM);
  eventually([&] { return hosts().empty(); });
  EXPECT_THAT(run({"NoSuchAction"}).errors, StartsWith("tabwright: There is no action"));
}

TEST_F(HostTest, ThatIsKilledInTheMiddleIsReportedInTheFormAskedFor) {
  const fs::path pipe = scratch / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  CommandOutcome outcome;
  std::thread caller([&] { outcome = run({"CloseTab", "--targetTab", "@" + pipe.string(), "--json"}); });
  const int writing = ::open(pipe.c_str(), O_WRONLY); // until the client reads for the host, which has begun
  ::kill(*hosts().begin(), SIGKILL);
  eventually([&] { return hosts().empty(); });
  ::close(writing);
  caller.join();
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(json::parse(outcome.errors).at("case"), "lost");
}

TEST_F(HostTest, CannotBeHeardWhereOutputCannotBeWritten) {
  const CommandOutcome outcome = testsupport::runProgram(
      "bash", {"-c", "\"$0\" run ClickElement --help >/dev/full", TABWRIGHT_TEST_CLIENT}, "", environment);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.errors, "tabwright: Standard output can’t be written: No space left on device.\n");
}

TEST_F(HostTest, IsNotStartedWhereItCouldOpenTooFewFiles) {
  const CommandOutcome outcome = testsupport::runProgram(
      "bash", {"-c", "ulimit -n 20; exec \"$0\" run NoSuchAction", TABWRIGHT_TEST_CLIENT}, "", environment);
  EXPECT_THAT(outcome.errors, HasSubstr("The action runs without the background host"));
  EXPECT_TRUE(hosts().empty());
}

TEST_F(HostTest, LeavesNothingBehindWhenItIsToldToEnd) {
  static_cast<void>(run({"NoSuchAction"}));
  ASSERT_EQ(hosts().size(), 1U);
  ::kill(*hosts().begin(), SIGTERM);
  eventually([&] { return hosts().empty(); });
  for (const auto& entry : fs::directory_iterator(scratch / "run/tabwright"))
    EXPECT_NE(entry.path().extension(), ".socket");
}

TEST_F(HostTest, MakesWayForANewerOne) {
  static_cast<void>(run({"NoSuchAction"}));
  const std::set<pid_t> first = hosts();
  RawConnection older(scratch);
  older.write(runRequest(1, "0.0.1", {"NoSuchAction"}));
  ASSERT_TRUE(older.answer());
  RawConnection newer(scratch);
  EXPECT_EQ(newer.errorOf(runRequest(1, "999.0", {"NoSuchAction"})), client::protocol::leavingError);
  EXPECT_THAT(run({"NoSuchAction"}).errors, HasSubstr("There is no action"));
  EXPECT_NE(hosts(), first);
}

TEST_F(HostTest, RefusesWhatIsNoRequestAndServesOn) {
  static_cast<void>(run({"NoSuchAction"}));
  const std::set<pid_t> first = hosts();
  {
    RawConnection connection(scratch);
    EXPECT_EQ(connection.errorOf("no json\n"), -32700);
    EXPECT_EQ(connection.errorOf("[]\n"), -32600);
    EXPECT_EQ(connection.errorOf(std::string(17 << 20, 'x') + "\n"), -32600);
    EXPECT_EQ(connection.errorOf(R"({"jsonrpc":"2.0","id":1,"method":"no/such"})"
                                 "\n"),
              -32601);
    EXPECT_EQ(connection.errorOf(R"({"jsonrpc":"2.0","id":2,"method":"tabwright/run","params":{"arguments":[5]}})"
                                 "\n"),
              -32602);
    connection.write(runRequest(3, "0.0.1", {"NoSuchAction"}));
    EXPECT_EQ(connection.answer().value().at("result").at("exitCode"), 2);
    connection.write("{\"jsonrpc\": half a message");
  }
  const RawConnection silent(scratch);
  EXPECT_THAT(run({"NoSuchAction"}).errors, HasSubstr("There is no action"));
  EXPECT_EQ(hosts(), first);
}

TEST_F(HostTest, GivesUpAClientThatNeverReadsAndServesOn) {
  static_cast<void>(run({"NoSuchAction"}));
  const std::set<pid_t> first = hosts();
  RawConnection deaf(scratch);
  // The answer names the request's long id again.
  const std::string request = R"({"jsonrpc":"2.0","method":"ping","id":")" + std::string(1 << 20, 'x') + "\"}\n";
  for (int requests = 0; deaf.write(request); ++requests)
    ASSERT_LT(requests, 10'000);
  EXPECT_THAT(run({"NoSuchAction"}).errors, HasSubstr("There is no action"));
  EXPECT_EQ(hosts(), first);
}

TEST_F(HostTest, IsNotUsedInAFolderThatOthersCanOpen) {
  fs::create_directory(scratch / "run/tabwright");
  fs::permissions(scratch / "run/tabwright", fs::perms::all);
  const CommandOutcome outcome = run({"NoSuchAction"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.errors, HasSubstr("runs without the background host"));
  EXPECT_TRUE(hosts().empty());
}

} // namespace
} // namespace tabwright::app
