#include "platform/LogReceiver.h"
#include "platform/LogSinks.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::platform {
namespace {

class LoggerTest : public testing::Test {
protected:
  ~LoggerTest() override { setLogReceiver(LogLevel::error, {}); }
  const Logger log{"Category"};
};

TEST_F(LoggerTest, WritesFromTheLowestLevelUpAndIsOffByDefault) {
  EXPECT_FALSE(log.isOn(LogLevel::error));
  std::vector<std::string> lines;
  setLogReceiver(LogLevel::info, [&](LogLevel, std::string_view category, std::string_view text) {
    lines.push_back(std::string(category) + "/" + std::string(text));
  });
  log.debug("{}", 1);
  log.info("{} {{}}", 2);
  log.error("{}", "{3}");
  EXPECT_THAT(lines, testing::ElementsAre("Category/2 {}", "Category/{3}"));
  setLogReceiver(LogLevel::debug, {});
  log.error("dropped");
  EXPECT_EQ(lines.size(), 2u);
}

TEST_F(LoggerTest, ListenersTakeLinesBesideTheReceiverWhileTheyLive) {
  std::vector<std::string> lines;
  const auto into = [&lines](const char* name) {
    return [&lines, name](LogLevel, std::string_view, std::string_view text) {
      lines.push_back(std::string(name) + " " + std::string(text));
    };
  };
  setLogReceiver(LogLevel::error, into("receiver"));
  {
    const LogListener listener(LogLevel::debug, into("listener"));
    log.debug("a");
    log.error("b");
    setLogReceiver(LogLevel::error, {});
    log.error("c");
  }
  EXPECT_FALSE(log.isOn(LogLevel::error));
  log.error("d");
  EXPECT_THAT(lines, testing::UnorderedElementsAre("listener a", "receiver b", "listener b", "listener c"));
}

TEST_F(LoggerTest, AddsLinesToAFileOfTheStateHome) {
  const testsupport::ScratchFolder folder;
  const auto file = folder / "state/tabwright.log";
  installLogSinks({.file = file, .fileLevel = LogLevel::info});
  log.debug("quiet");
  log.info("{} loud", "{}");
  setLogReceiver(LogLevel::error, {});
  EXPECT_THAT(
      folder.content(file),
      testing::ContainsRegex("^\\[[-0-9: .]+\\] \\[info\\] \\[com.tabwright.tabwright:Category\\] \\{\\} loud\n$"));
}

TEST_F(LoggerTest, TellsOnceThatItsFileCannotBeWritten) {
  std::vector<std::string> losses;
  const auto onLoss = [&losses](const std::string& sentence) { losses.push_back(sentence); };
  installLogSinks({.file = "/dev/null/tabwright.log", .onLoss = onLoss});
  EXPECT_FALSE(log.isOn(LogLevel::error));
  installLogSinks({.file = "/dev/full", .onLoss = onLoss});
  log.error("a");
  log.error("b");
  setLogReceiver(LogLevel::error, {});
  EXPECT_THAT(losses, testing::ElementsAre(testing::HasSubstr("No log is kept: Couldn't make the folder"),
                                           testing::HasSubstr("No space left on device")));
}

TEST(LogLevelNamed, KnowsThreeNames) {
  EXPECT_EQ(logLevelNamed("debug"), LogLevel::debug);
  EXPECT_EQ(logLevelNamed("Error"), std::nullopt);
}

} // namespace
} // namespace tabwright::platform
