#include "engine/AppleScriptSnippets.h"
#include "engine/PageLibrary.h"
#include "engine/ScriptText.h"
#include "support/LogCapture.h"
#include "support/SourceFolder.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <limits>
#include <regex>
#include <stdexcept>

namespace tabwright::engine {
namespace {

using testsupport::replacingAll;
using testsupport::sourceText;

const JobVariables variables{.result = "__RESULT", .canary = "__CANARY"};

TEST(AsyncJob, IsTheTextWrittenByHand) {
  const testsupport::LogCapture log;
  const std::string js = sourceText("tests/engine/golden/asyncJob.js");
  std::string expected = sourceText("tests/engine/golden/asyncJob.applescript");
  expected = replacingAll(expected, "@MARKER@", AppleScriptSnippets::emptyResultMarker());
  expected = replacingAll(expected, "@PAGE_LIBRARY@", escapeForLiteral(pageLibrary()));
  EXPECT_EQ(AppleScriptSnippets::asyncJob(js, 1.0, 0.2, variables), expected);
  EXPECT_TRUE(log.holds("debug AppleScriptSnippets: JS:\n" + js));
}

TEST(AsyncJob, PollsOnceMoreThanThereAreIntervals) {
  const auto polls = [](double timeout, double interval) {
    const std::string text = AppleScriptSnippets::asyncJob("1", timeout, interval);
    std::smatch match;
    EXPECT_TRUE(std::regex_search(text, match, std::regex("\nrepeat (-?[0-9]+) times\n")));
    return match[1].str();
  };
  EXPECT_EQ(polls(1.0, 0.2), "6");
  EXPECT_EQ(polls(10, 0.2), "51");
  EXPECT_EQ(polls(0, 0.2), "1");
  EXPECT_EQ(polls(1.1, 0.2), "6");
  EXPECT_EQ(polls(1e300, 0.2), "536870911");
  EXPECT_THROW(polls(1, 0), std::invalid_argument);
  EXPECT_THROW(polls(std::numeric_limits<double>::quiet_NaN(), 0.2), std::invalid_argument);
}

TEST(AsyncJob, NamesTwoFreshVariablesPerJob) {
  const std::string job = AppleScriptSnippets::asyncJob("1", 1, 0.2);
  std::smatch canary;
  std::smatch result;
  ASSERT_TRUE(std::regex_search(job, canary, std::regex("window\\.(__[0-9A-HJKMNP-TV-Z]{26}) = 'alive'")));
  ASSERT_TRUE(std::regex_search(job, result, std::regex("\"window\\.(__[0-9A-HJKMNP-TV-Z]{26}) \\|\\| -1\"")));
  EXPECT_NE(canary[1], result[1]);
  EXPECT_NE(AppleScriptSnippets::asyncJob("1", 1, 0.2), job);
}

TEST(EmptyResultMarker, IsOneForTheProcess) {
  EXPECT_TRUE(std::regex_match(AppleScriptSnippets::emptyResultMarker(), std::regex("res[0-9A-HJKMNP-TV-Z]{26}")));
  EXPECT_EQ(AppleScriptSnippets::emptyResultMarker(), AppleScriptSnippets::emptyResultMarker());
}

} // namespace
} // namespace tabwright::engine
