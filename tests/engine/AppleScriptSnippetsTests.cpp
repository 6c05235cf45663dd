#include "ResourceFile.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/PageLibrary.h"
#include "engine/ScriptLayers.h"
#include "engine/ScriptText.h"
#include "support/JavaScriptContext.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <limits>
#include <regex>
#include <stdexcept>

namespace tabwright::engine {
namespace {

using testsupport::goldenText;
using testsupport::replacingAll;

const JobVariables variables{.result = "__RESULT", .canary = "__CANARY"};

// What a browser would get: the literal of a cleaned-up script, read as AppleScript reads it.
std::string plantedCode(const std::string& js) {
  const std::string script = preparedBody(AppleScriptSnippets::asyncJob(js, 1.0, 0.2, variables));
  const std::string start = "set jsJobCode to \"";
  std::string code;
  for (std::size_t at = script.find(start) + start.size(); script[at] != '"'; ++at)
    code += script[at] == '\\' ? script[++at] : script[at];
  return code;
}

std::string resultOf(const std::string& js) {
  const testsupport::JavaScriptContext page;
  page.evaluate("var window = globalThis;");
  page.evaluate(plantedCode(js));
  EXPECT_EQ(page.evaluate("'' + window.__CANARY"), "\"alive\"");
  return replacingAll(page.evaluate("window.__RESULT || -1"), AppleScriptSnippets::emptyResultMarker(), "MARKER");
}

TEST(AsyncJob, IsTheTextWrittenByHand) {
  const testsupport::LogCapture log;
  const std::string js = goldenText("asyncJob.js");
  std::string expected = goldenText("asyncJob.applescript");
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

TEST(AsyncJob, DeliversFlatTexts) {
  EXPECT_EQ(resultOf("return [1, [2, [3]], {a: 1}]"), R"(["1","2","3",""])");
  EXPECT_EQ(resultOf("return undefined"), R"(["MARKER"])");
  EXPECT_EQ(resultOf("return null"), R"(["MARKER"])");
  EXPECT_EQ(resultOf("return [undefined]"), R"([""])");
  EXPECT_EQ(resultOf("return 0"), R"(["0"])");
  EXPECT_EQ(resultOf("return \"\""), R"([""])");
  EXPECT_EQ(resultOf("return false"), R"(["false"])");
  EXPECT_EQ(resultOf("return []"), "[]");
  EXPECT_EQ(resultOf("return await Promise.resolve('a\\\\b\"c')"), R"(["a\\b\"c"])");
  EXPECT_EQ(resultOf("throw Error('no')"), R"(["Error: no"])");
  EXPECT_EQ(resultOf("return cssSelectorFor('x', 'nothing')"), R"(["Error: Invalid target strategy"])");
}

TEST(AsyncJob, LosesLinesThatLookLikeComments) {
  EXPECT_EQ(resultOf("let counter = 1;\n--counter;\nreturn counter"), R"(["1"])");
}

TEST(AsyncJob, LeavesPlaceholdersOfAUsersTextAlone) {
  EXPECT_EQ(resultOf("return '__JS__ __RESULT__ __POLL_COUNT__'"), R"(["__JS__ __RESULT__ __POLL_COUNT__"])");
}

TEST(EmptyResultMarker, IsOneForTheProcess) {
  EXPECT_TRUE(std::regex_match(AppleScriptSnippets::emptyResultMarker(), std::regex("res[0-9A-HJKMNP-TV-Z]{26}")));
  EXPECT_EQ(AppleScriptSnippets::emptyResultMarker(), AppleScriptSnippets::emptyResultMarker());
}

} // namespace
} // namespace tabwright::engine
