#include "scripting/driver/PageJobs.h"

#include <gtest/gtest.h>

namespace tabwright::scripting {
namespace {

const std::string canary = "__01JDA0000000000000000000CA";
const std::string result = "__01JDA0000000000000000000RE";

std::string jobWith(const std::string& body) {
  return "window." + canary + " = 'alive';\n(async function() {\ntry {\n" + body +
         "\n} catch (error) {\nreturn error.toString()\n}\n})()\n.then(res => {\nwindow." + result +
         " = (res === undefined || res === null)\n? ['x']\n: [res]\n});";
}

TEST(PageJobs, AreKnownByTheirVariables) {
  const auto job = readPageJob(jobWith("return 1"));
  ASSERT_TRUE(job);
  EXPECT_EQ(job->canary, canary);
  EXPECT_EQ(job->result, result);
  EXPECT_TRUE(job->code.starts_with("window." + canary + " = 'alive';\n"));
  EXPECT_TRUE(job->code.ends_with("('" + result + "', 'x', async function() {\ntry {\nreturn 1\n} catch (error) {\n" +
                                  "return error.toString()\n}\n})"))
      << job->code;
}

TEST(PageJobs, ABodyCannotNameAnotherResult) {
  const std::string other = "__01JDA0000000000000000000XX";
  const auto job = readPageJob(
      jobWith("(() => {})()\n.then(res => {\nwindow." + other + " = (res === undefined || res === null)\n? ['y']"));
  ASSERT_TRUE(job);
  EXPECT_EQ(job->result, result);
}

TEST(PageJobs, OtherJavaScriptIsNone) {
  for (const std::string& text : {std::string(), std::string("1 + 1"), std::string("window."), "window." + canary,
                                  "window." + canary + " = 'alive';", "'' + window." + canary, " " + jobWith(""),
                                  "window.__01jda0000000000000000000ca = 'alive';" + jobWith("")})
    EXPECT_FALSE(readPageJob(text)) << text;
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
  const auto name = [](int number) { return "__" + std::to_string(10000 + number); };
  for (int job = 0; job < 1000; ++job)
    results.keep({name(job), "r" + name(job), ""}, 1);
  EXPECT_FALSE(results.answer("'' + window." + name(0)));
  EXPECT_TRUE(results.answer("'' + window." + name(999)));
}

} // namespace
} // namespace tabwright::scripting
