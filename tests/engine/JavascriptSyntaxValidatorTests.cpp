#include "engine/JavaScriptCoreSyntaxValidator.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace tabwright::engine {
namespace {

TEST(JavascriptSyntaxValidator, AcceptsTheBodyOfAFunction) {
  const testsupport::LogCapture log;
  JavaScriptCoreSyntaxValidator validator;
  for (const char* js : {"return 1", "", "const a = async () => await 1;\nreturn a()", "throw Error('not run')"})
    EXPECT_EQ(validator.validateJavascript(js), std::nullopt) << js;
  EXPECT_EQ(log.linesOf("debug JavascriptSyntaxValidator: sucess").size(), 4u);
}

TEST(JavascriptSyntaxValidator, TellsTheExceptionOfAMalformedText) {
  const testsupport::LogCapture log;
  JavaScriptCoreSyntaxValidator validator;
  EXPECT_EQ(validator.validateJavascript("function("), "SyntaxError: Function statements must have a name.");
  EXPECT_EQ(validator.validateJavascript("return ("), "SyntaxError: Unexpected token '}'");
  EXPECT_EQ(validator.validateJavascript("await x"), "SyntaxError: Unexpected identifier 'x'");
  EXPECT_NE(validator.validateJavascript("return 1 // swallows the end"), std::nullopt);
  EXPECT_NE(validator.validateJavascript(std::string("return 'a\0'", 11) + "x y"), std::nullopt);
  EXPECT_TRUE(
      log.holds("debug JavascriptSyntaxValidator: failure: SyntaxError: Function statements must have a name."));
}

TEST(JavascriptSyntaxValidator, LeavesNothingBehindForTheNextText) {
  JavaScriptCoreSyntaxValidator validator;
  EXPECT_EQ(validator.validateJavascript("}); let twice = 1; (function() {"), std::nullopt);
  EXPECT_EQ(validator.validateJavascript("}); let twice = 2; (function() {"), std::nullopt);
  for (int count = 0; count < 600; ++count) // garbage is collected in between
    EXPECT_EQ(validator.validateJavascript("return (").has_value(), true);
}

TEST(JavascriptSyntaxValidator, AnswersSeveralThreadsAtOnce) {
  JavaScriptCoreSyntaxValidator validator;
  std::atomic<int> refused = 0;
  {
    std::vector<std::jthread> threads;
    for (int count = 0; count < 4; ++count)
      threads.emplace_back([&] {
        for (int round = 0; round < 10; ++round)
          refused += validator.validateJavascript(round % 2 == 0 ? "return 1" : "return (") ? 1 : 0;
      });
  }
  EXPECT_EQ(refused, 20);
}

TEST(JavascriptSyntaxValidator, DoesNotRunATextThatClosesTheFunction) {
  JavaScriptCoreSyntaxValidator validator;
  EXPECT_EQ(validator.validateJavascript("}); for (;;) {} (function() {"), std::nullopt);
}

} // namespace
} // namespace tabwright::engine
