#include "client/HostProtocol.h"
#include "support/CommandRun.h"
#include "support/HostSurroundings.h"
#include "support/ReportCollector.h"
#include "support/ScratchFolder.h"
#include "support/SourceFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

/// The background host with an address to report to, and the process that sends, as they run.
namespace tabwright::app {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;
using testsupport::CommandOutcome;
using testsupport::ScratchFolder;

class HostReportTest : public ::testing::Test {
protected:
  HostReportTest() {
    environment.insert({{"no_proxy", "*"},
                        // A crash that is meant needs no report of a sanitizer's.
                        {"ASAN_OPTIONS", "handle_segv=0:handle_abort=0:detect_leaks=0"},
                        {"TABWRIGHT_TEST_REPORT_DSN", collector.dsn()}});
  }
  ~HostReportTest() override {
    for (const pid_t process : processes())
      ::kill(process, SIGKILL);
  }

  [[nodiscard]] CommandOutcome run(std::vector<std::string> words) const {
    words.insert(words.begin(), "run");
    return testsupport::runProgram(TABWRIGHT_TEST_CLIENT, words, "", environment);
  }

  /// The processes in these surroundings whose words begin with the host's and `command`.
  [[nodiscard]] std::set<pid_t> processes(const std::string& command = client::handover::command) const {
    std::set<pid_t> found;
    for (const auto& process : fs::directory_iterator("/proc")) {
      const std::string name = process.path().filename();
      if (name.find_first_not_of("0123456789") == std::string::npos &&
          textOf(process.path() / "environ").find(scratch.path().string()) != std::string::npos &&
          textOf(process.path() / "cmdline").find(std::string(1, '\0') + command) != std::string::npos)
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

  void endHosts(int signal) const {
    for (const pid_t host : processes())
      ::kill(host, signal);
    eventually([this] { return processes().empty(); });
  }
  void awaitRequests(std::size_t count) const {
    eventually([&] { return collector.requests().size() >= count; });
  }
  [[nodiscard]] std::vector<std::string> reports(const std::string& ending) const {
    std::vector<std::string> texts;
    if (!fs::exists(spool))
      return texts;
    for (const auto& entry : fs::directory_iterator(spool)) {
      if (entry.path().extension() == ending)
        texts.push_back(ScratchFolder::content(entry.path()));
    }
    return texts;
  }
  /// All that has left the program, or is to leave it.
  [[nodiscard]] std::string everythingReported() const {
    std::string all;
    for (const std::string& request : collector.requests())
      all += request;
    for (const char* ending : {".crash", ".envelope", ".pending"}) {
      for (const std::string& report : reports(ending))
        all += report;
    }
    return all;
  }

  [[nodiscard]] static std::string textOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text; // an iterator would throw for a process that ends now
    text << stream.rdbuf();
    return text.str();
  }

  ScratchFolder scratch;
  fs::path spool = scratch / "state/tabwright/reports";
  testsupport::ReportCollector collector;
  std::map<std::string, std::string> environment = testsupport::hostSurroundings(scratch);
};

TEST_F(HostReportTest, TellsOfACrashInTheMiddleOfAnAction) {
  CommandOutcome outcome;
  std::thread caller([&] {
    outcome = run({"RunAppleScript", "--targetContext", "chromium", "--script",
                   "delay 600\nset RETURN_VALUE to \"telling words\""});
  });
  const fs::path scripts = scratch / "run/tabwright/scripts/Temp";
  eventually([&] { return fs::exists(scripts) && fs::directory_iterator(scripts) != fs::directory_iterator(); });
  awaitRequests(1); // the launch
  eventually([this] { return processes("send-reports").empty(); });
  endHosts(SIGSEGV);
  caller.join();
  EXPECT_EQ(outcome.exitCode, 1);
  ASSERT_THAT(reports(".crash"), SizeIs(1));
  EXPECT_THAT(everythingReported(),
              AllOf(Not(HasSubstr("telling")), Not(HasSubstr("chromium")), Not(HasSubstr(scratch.path().string()))));

  static_cast<void>(run({"NoSuchAction"})); // the next start sends it
  awaitRequests(2);
  EXPECT_THAT(collector.requests().front(), HasSubstr(R"("message":{"formatted":"Launch )"));
  const std::string report = collector.requests().back();
  EXPECT_THAT(report, AllOf(HasSubstr(R"("type":"SIGSEGV")"), HasSubstr(R"("code_file":"tabwright-host")")));
  EXPECT_THAT(everythingReported(), AllOf(Not(HasSubstr("telling")), Not(HasSubstr(scratch.path().string()))));
  eventually([this] { return processes("send-reports").empty(); });
  EXPECT_THAT(reports(".crash"), SizeIs(0));
  EXPECT_THAT(reports(".envelope"), SizeIs(0));

  ScratchFolder::write(scratch / "report", report.substr(report.find("\r\n\r\n") + 4));
  const CommandOutcome symbols = testsupport::runProgram(testsupport::sourceFolder() / "scripts/symbolise.sh",
                                                         {scratch / "report", TABWRIGHT_TEST_EXECUTABLE}, "", {});
  EXPECT_EQ(symbols.exitCode, 0) << symbols.errors;
  EXPECT_THAT(symbols.output, AllOf(HasSubstr("SIGSEGV"), HasSubstr("tabwright::app::runHost"))) << report;
}

TEST_F(HostReportTest, TellsOfErrorsNothingOfWhatTheUserWorksOn) {
  // Programs can't be written there, not even by root.
  static_cast<void>(run({"NoSuchAction"}));
  fs::create_directories(scratch / "run/tabwright/scripts");
  fs::permissions(scratch / "run/tabwright/scripts", fs::perms::owner_all);
  fs::create_directory_symlink("/proc", scratch / "run/tabwright/scripts/Temp");
  const std::vector<std::vector<std::string>> actions = {
      {"RunAppleScript", "--script", "set RETURN_VALUE to \"telling words\""},
      {"RunJavascriptInTab", "--jsCode", "return 'telling code'"},
      {"OpenInTab", "--newURL", "https://telling.example/?secret=telling"},
      {"ClickElement", "--cssSelector", "#telling-selector"},
      {"SetFormFieldValue", "--targetField", "telling-field", "--newValue", "telling text"},
      {"SelectMenuItem", "--title", "telling title"},
      {"SimulateTyping", "--characters", "telling keys"},
  };
  for (std::vector<std::string> words : actions) {
    words.insert(words.end(), {"--targetContext", "chromium"});
    const CommandOutcome outcome = run(words);
    EXPECT_NE(outcome.exitCode, 2) << words.front() << outcome.errors; // all did begin
  }
  EXPECT_GE(reports(".envelope").size(), 4U); // the last two end before they write one
  endHosts(SIGTERM);
  static_cast<void>(run({"NoSuchAction"}));
  awaitRequests(5);
  eventually([this] { return processes("send-reports").empty(); });
  const std::string all = everythingReported();
  EXPECT_THAT(all, HasSubstr(R"+("type":"FileFailure","value":"write (2)")+"));
  for (const std::string& secret : {std::string("telling"), std::string("Temp"), scratch.path().string(),
                                    std::string("XDG_"), std::string("/proc"), std::string("applescript")})
    EXPECT_THAT(all, Not(HasSubstr(secret)));
}

TEST_F(HostReportTest, KeepsReportsWhileTheCollectorIsAway) {
  collector.behave(testsupport::ReportCollector::Manner::answers, "503 Service Unavailable\r\n");
  static_cast<void>(run({"NoSuchAction"}));
  awaitRequests(1);
  eventually([this] { return processes("send-reports").empty(); });
  EXPECT_THAT(reports(".envelope"), SizeIs(1));
  endHosts(SIGTERM);
  EXPECT_THAT(reports(".pending"), SizeIs(0));
  collector.behave(testsupport::ReportCollector::Manner::answers);
  static_cast<void>(run({"NoSuchAction"}));
  awaitRequests(2);
  eventually([this] { return reports(".envelope").empty(); });
  EXPECT_THAT(collector.requests().back(), HasSubstr("Launch ")); // the launch again, and no second one
}

TEST_F(HostReportTest, DoesAndKeepsNothingWithoutAnAddress) {
  for (const char* address : {"", "https://no-project.example/"}) {
    environment["TABWRIGHT_TEST_REPORT_DSN"] = address;
    EXPECT_THAT(run({"NoSuchAction"}).errors, HasSubstr("There is no action"));
    endHosts(SIGSEGV);
    EXPECT_FALSE(fs::exists(spool)) << address;
  }
  EXPECT_THAT(textOf(scratch / "state/tabwright/tabwright.log"), HasSubstr("Errors aren't reported: the address"));
}

} // namespace
} // namespace tabwright::app
