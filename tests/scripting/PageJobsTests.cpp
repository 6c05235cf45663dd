#include "scripting/chromium/VersionQuestion.h"
#include "scripting/driver/PageJobs.h"
#include "support/GeneratedJob.h"

#include <gtest/gtest.h>

namespace tabwright::scripting {
namespace {

using testsupport::generatedJob;
using testsupport::literalAfter;

const std::string canary = testsupport::jobVariables.canary;
const std::string result = testsupport::jobVariables.result;

TEST(PageJobs, AreKnownByTheirVariables) {
  const auto job = readPageJob(generatedJob("return 1"));
  ASSERT_TRUE(job);
  EXPECT_EQ(job->canary, canary);
  EXPECT_EQ(job->result, result);
  EXPECT_TRUE(job->code.starts_with("window." + canary + " = 'alive';\n"));
  EXPECT_TRUE(job->code.contains("('" + result + "', '" + engine::AppleScriptSnippets::emptyResultMarker() +
                                 "', async function() {\ntry {\n"))
      << job->code;
  EXPECT_TRUE(job->code.ends_with("\nreturn 1\n} catch (error) {\nreturn error.toString()\n}\n})")) << job->code;
}

TEST(PageJobs, ABodyCannotNameAnotherResult) {
  const std::string other = "__01JDA0000000000000000000XX";
  const auto job = readPageJob(generatedJob("(() => {})()\n.then(res => {\nwindow." + other +
                                            " = (res === undefined || res === null)\n? ['y']"));
  ASSERT_TRUE(job);
  EXPECT_EQ(job->result, result);
}

TEST(PageJobs, OtherJavaScriptIsNone) {
  for (const std::string& text : {std::string(), std::string("1 + 1"), std::string("window."), "window." + canary,
                                  "window." + canary + " = 'alive';", "'' + window." + canary, " " + generatedJob(""),
                                  "window.__01jda0000000000000000000ca" + generatedJob("").substr(35)})
    EXPECT_FALSE(readPageJob(text)) << text;
}

TEST(PageJobs, AreAskedForByTheProgramsOwnQuestions) {
  const std::string program = testsupport::jobProgram("");
  PageJobResults results;
  results.keep({canary, result, ""}, boost::json::array{"a"});
  const auto ask = [&](const std::string& line) {
    return results.answer(literalAfter(program, line + " my executeJavascriptInTab("));
  };
  EXPECT_EQ(ask("set canary to"), boost::json::value("alive"));
  EXPECT_EQ(ask("set res to"), boost::json::value(boost::json::array{"a"}));
  EXPECT_TRUE(asksForResult(literalAfter(program, "set res to my executeJavascriptInTab(")));
  EXPECT_EQ(results.answer(literalAfter(program, "then\nmy executeJavascriptInTab(")), boost::json::value(true));
}

TEST(VersionQuestion, IsTheOneThatProgramsAsk) {
  const std::string program =
      engine::scriptLayers("org.chromium.chromium")
          .fill({{"ARGKEYS", ""}, {"MAIN_RECEIVER_ID", ""}, {"BROWSER_BUNDLE_ID", ""}, {"APPLESCRIPT", ""}});
  const std::string question = literalAfter(program, "return execute javascript ");
  EXPECT_EQ(answerToVersionQuestion(question, {.windows = {}, .version = "156.0.8078.79"}), "156");
  EXPECT_EQ(answerToVersionQuestion(question + " ", {.windows = {}, .version = "156.0.8078.79"}), std::nullopt);
}

TEST(PageJobs, OfTheProgramThatReloadsLoadThePageAnew) {
  EXPECT_TRUE(readPageJob(generatedJob(engine::AppleScriptSnippets::pageReload()))->reloadsThePage());
  EXPECT_FALSE(readPageJob(generatedJob("return 1"))->reloadsThePage());
}

TEST(PageJobs, KeptResultsAnswerTheQuestionsOfTheirJobOnly) {
  PageJobResults results;
  EXPECT_FALSE(results.answer("'' + window." + canary));
  results.keep({canary, result, ""}, boost::json::array{"a", "b"});
  EXPECT_EQ(results.answer("'' + window." + canary), boost::json::value("alive"));
  EXPECT_EQ(results.answer("window." + result + " || -1"), boost::json::value(boost::json::array{"a", "b"}));
  EXPECT_FALSE(results.answer("window." + canary + " || -1"));
  EXPECT_FALSE(results.answer("document.title"));
  EXPECT_EQ(results.answer("delete window." + result), boost::json::value(true));
  EXPECT_FALSE(results.answer("'' + window." + canary)) << "a page that was left later says so itself";
}

TEST(PageJobs, ResultsThatNobodyAsksForAreForgotten) {
  PageJobResults results;
  const auto name = [](int number) { return "__" + std::string(21, '0') + std::to_string(10000 + number); };
  for (int job = 0; job < 1000; ++job)
    results.keep({name(job), "r" + name(job), ""}, 1);
  EXPECT_FALSE(results.answer("'' + window." + name(0)));
  EXPECT_TRUE(results.answer("'' + window." + name(999)));
}

} // namespace
} // namespace tabwright::scripting
