#include "crashreport/ReportSender.h"
#include "platform/CallLimits.h"
#include "platform/linux/FileLock.h"
#include "support/LogCapture.h"
#include "support/ReportCollector.h"
#include "support/ScratchFolder.h"
#include "support/SteppedClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

namespace tabwright::crashreport {
namespace {

using namespace std::chrono_literals;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;
using Manner = testsupport::ReportCollector::Manner;

class ReportSenderTest : public ::testing::Test {
protected:
  ReportSenderTest() {
    ::setenv("no_proxy", "*", 1); // the collector is here, whatever the machine is told
    for (const char* envelope : {"one\n", "two\n", "three\n"})
      spool.add(envelope);
  }

  void send(const platform::CallLimits& limits = {}) {
    ReportSender({.spool = spool,
                  .dsn = Dsn::parse(collector ? collector->dsn() : goneDsn).value(),
                  .client = "tabwright/9.9",
                  .clock = clock,
                  .answerPatience = patience})
        .send(limits);
  }
  [[nodiscard]] std::size_t sent() const { return collector->requests().size(); }
  [[nodiscard]] std::size_t waiting() const { return spool.names(ReportSpool::envelopeEnding).size(); }

  testsupport::LogCapture log;
  testsupport::ScratchFolder scratch;
  ReportSpool spool{scratch / "reports"};
  testsupport::SteppedClock clock;
  std::optional<testsupport::ReportCollector> collector{std::in_place};
  std::string goneDsn;
  std::chrono::milliseconds patience = 10s; // none of these is waited for
};

TEST_F(ReportSenderTest, PostsWhatWaitsOldestFirstAndForgetsIt) {
  send();
  const auto head = AllOf(StartsWith("POST /api/42/envelope/ HTTP/1.1\r\n"),
                          HasSubstr("\r\nContent-Type: application/x-sentry-envelope\r\n"),
                          HasSubstr("\r\nX-Sentry-Auth: Sentry sentry_version=7, sentry_client=tabwright/9.9, "
                                    "sentry_key=somekey\r\n"));
  EXPECT_THAT(collector->requests(), ElementsAre(AllOf(head, EndsWith("\r\n\r\none\n")), EndsWith("\r\n\r\ntwo\n"),
                                                 EndsWith("\r\n\r\nthree\n")));
  EXPECT_EQ(waiting(), 0U);
  send();
  EXPECT_EQ(sent(), 3U);
}

TEST_F(ReportSenderTest, DropsWhatIsRefusedForGood) {
  for (const char* head : {"400 Bad Request\r\n", "403 Forbidden\r\n", "413 Too Large\r\n"}) {
    collector->behave(Manner::answers, head);
    send();
    EXPECT_EQ(waiting(), 0U) << head;
    spool.add("next\n");
  }
}

TEST_F(ReportSenderTest, KeepsWhatMayBeTakenLater) {
  for (const char* head : {"500 Internal Server Error\r\n", "502 Bad Gateway\r\n",
                           "301 Moved\r\nLocation: http://127.0.0.1:1/elsewhere\r\n", "no answer at all"}) {
    collector->behave(Manner::answers, head);
    const std::size_t before = sent();
    send();
    EXPECT_EQ(waiting(), 3U) << head;
    EXPECT_EQ(sent(), before + 1) << head; // one failure is enough
  }
  collector->behave(Manner::answers);
  send();
  EXPECT_EQ(waiting(), 0U);
}

TEST_F(ReportSenderTest, GivesTheCollectorTheTimeItAsksFor) {
  collector->behave(Manner::answers, "429 Too Many Requests\r\nRetry-After: 120\r\n");
  send();
  EXPECT_EQ(waiting(), 3U);
  collector->behave(Manner::answers);
  clock.advance(119s);
  send();
  EXPECT_EQ(sent(), 1U);
  clock.advance(2s);
  collector->behave(Manner::answers, "200 OK\r\nRetry-After: 60\r\n"); // taken, but enough for now
  send();
  EXPECT_EQ(sent(), 2U);
  EXPECT_EQ(waiting(), 2U);
  clock.advance(61s);
  collector->behave(Manner::answers, "429 Too Many Requests\r\n"); // a minute, then
  send();
  clock.advance(59s);
  send();
  EXPECT_EQ(sent(), 3U);
  clock.advance(2s);
  collector->behave(Manner::answers, "429 Too Many Requests\r\nRetry-After: 99999999\r\n");
  send();
  EXPECT_EQ(sent(), 4U);
  clock.advance(24h + 2s); // a day at most
  collector->behave(Manner::answers);
  send();
  EXPECT_EQ(waiting(), 0U);
}

TEST_F(ReportSenderTest, DoesNotWaitForACollectorThatIsSilentOrGone) {
  collector->behave(Manner::fallsSilent);
  patience = 50ms;
  send();
  EXPECT_EQ(waiting(), 3U);
  goneDsn = collector->dsn();
  collector.reset();
  send();
  EXPECT_EQ(waiting(), 3U);
  EXPECT_THAT(log.linesOf("info HttpPost: No answer"), SizeIs(2));
}

TEST_F(ReportSenderTest, DoesNotReadAnAnswerWithoutEnd) {
  collector->behave(Manner::neverFinishes);
  send();
  EXPECT_EQ(waiting(), 0U);
  spool.add("more\n");
  collector->behave(Manner::neverFinishes, "503 Service Unavailable\r\n");
  send();
  EXPECT_EQ(waiting(), 1U);
}

TEST_F(ReportSenderTest, StopsAtItsDeadline) {
  platform::CallLimits limits;
  limits.deadline = std::chrono::steady_clock::time_point::min();
  send(limits);
  EXPECT_EQ(sent(), 0U);
  EXPECT_EQ(waiting(), 3U);
}

TEST_F(ReportSenderTest, LeavesItToAnotherThatSends) {
  {
    const platform::FileLock other(spool.path() / "sender.lock", 0ns);
    send();
    EXPECT_EQ(sent(), 0U);
  }
  send();
  EXPECT_EQ(sent(), 3U);
}

TEST_F(ReportSenderTest, MakesReportsOfCrashesFirst) {
  const auto write = [this](const std::string& content) {
    testsupport::ScratchFolder::write(spool.path() / ReportSpool::newName(ReportSpool::crashEnding), content);
  };
  write(R"({"release":"1","dist":"1","environment":"Beta","modules":[]})"
        "\ncrash 11 1 5\n");
  write("damaged");
  write("");
  EXPECT_TRUE(spool.hasReports());
  send();
  EXPECT_EQ(sent(), 4U);
  EXPECT_THAT(collector->requests().back(), HasSubstr(R"("type":"SIGSEGV")"));
  EXPECT_FALSE(spool.hasReports());
  EXPECT_THAT(log.linesOf("error ReportSender: The record of a crash can't be read"), SizeIs(2));
}

} // namespace
} // namespace tabwright::crashreport
