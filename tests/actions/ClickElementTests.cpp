#include "engine/AppleScriptSnippets.h"
#include "engine/Scriptacular.h"
#include "support/ActionBench.h"
#include "support/FailureText.h"

#include <gtest/gtest.h>

#include <regex>

namespace tabwright::actions {
namespace {

using Steps = std::vector<std::string>;
using host::ParameterTexts;
using testsupport::failureText;

constexpr const char* braveTab = R"({"targetContext":"brave","fullID":"com.brave.browser:8"})";

// Each job has fresh names for its variables in the page; here they are all alike.
std::string withoutJobNames(const std::string& program) {
  return std::regex_replace(program, std::regex("__[0-9A-HJKMNP-TV-Z]{26}"), "__ULID");
}

class ClickElement : public testing::Test {
protected:
  ClickElement() { bench.payload = R"(["true"])"; }

  boost::json::value click(ParameterTexts parameters) { return bench.perform("ClickElement", std::move(parameters)); }

  // The program that should have run, assembled from its body.
  std::string program(const std::string& body, const std::string& browserID) {
    const engine::Scriptacular scriptacular(bench.scriptServices, body, {}, {browserID, "any name"},
                                            engine::TellSystemEvents::no);
    return withoutJobNames(scriptacular.buildScriptText());
  }

  testsupport::ActionBench bench;
};

TEST_F(ClickElement, ClicksInTheFrontTabOfTheFrontmostBrowserByDefault) {
  EXPECT_TRUE(click({{"cssSelector", "a.next"}}).is_null());
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "frontmost lookup", "run"}));
  const std::string body =
      engine::AppleScriptSnippets::jobForFrontTab("return [\n  clickPageElement(\"a.next\")\n]", 1.0, 0.2);
  EXPECT_EQ(withoutJobNames(bench.scripts.at(0)), program(body, "org.chromium.chromium"));
}

TEST_F(ClickElement, IgnoresAGivenTabUnlessItIsChosen) {
  click({{"cssSelector", "a"}, {"targetTab", braveTab}, {"targetContext", "chromium"}});
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "run"})) << "a named browser needs no lookup";
  const std::string body =
      engine::AppleScriptSnippets::jobForFrontTab("return [\n  clickPageElement(\"a\")\n]", 1.0, 0.2);
  EXPECT_EQ(withoutJobNames(bench.scripts.at(0)), program(body, "org.chromium.chromium"));
}

TEST_F(ClickElement, ASpecificTabDecidesTheBrowser) {
  click({{"cssSelector", "a"}, {"tabSelection", "specificTab"}, {"targetTab", braveTab}, {"targetContext", "safari"}});
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "run"}));
  const std::string body = engine::AppleScriptSnippets::jobForRequestedTab(
      "com.brave.browser:8", "return [\n  clickPageElement(\"a\")\n]", 1.0, 0.2);
  EXPECT_EQ(withoutJobNames(bench.scripts.at(0)), program(body, "com.brave.browser"));
}

TEST_F(ClickElement, PassesTheSelectorUntrimmedAndEscaped) {
  click({{"cssSelector", " a[href=\"\\x\"] "}});
  const std::string body = engine::AppleScriptSnippets::jobForFrontTab(
      "return [\n  clickPageElement(\" a[href=\\\"\\\\x\\\"] \")\n]", 1.0, 0.2);
  EXPECT_EQ(withoutJobNames(bench.scripts.at(0)), program(body, "org.chromium.chromium"));
}

TEST_F(ClickElement, AsksForWhatIsMissingBeforeItCounts) {
  const ParameterTexts incomplete[]{
      {}, {{"cssSelector", " \n"}}, {{"cssSelector", "a"}, {"tabSelection", "specificTab"}}};
  const char* const questions[]{"cssSelector needs a value. Which element? Give its CSS selector.",
                                "cssSelector needs a value. Which element? Give its CSS selector.",
                                "targetTab needs a value. Which tab? Give one that another action returned."};
  for (std::size_t index = 0; index < std::size(incomplete); ++index)
    EXPECT_EQ(failureText([&] { return click(incomplete[index]); }), questions[index]);
  EXPECT_EQ(failureText([&] { return click({{"cssSelector", ""}, {"tabSelection", "specificTab"}}); }), questions[0])
      << "the text is asked for first";
  EXPECT_EQ(bench.steps, Steps{});
}

TEST_F(ClickElement, SucceedsAndPausesWhateverThePageAnswered) {
  for (const char* payload : {R"(["true"])", R"(["false"])", R"(["SyntaxError: no selector"])"}) {
    bench.steps.clear();
    bench.payload = payload;
    EXPECT_TRUE(
        click({{"cssSelector", "a"}, {"targetContext", "brave"}, {"pauseAfterSucessInSeconds", "0.5"}}).is_null());
    EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "run", "sleep 0.5"}));
  }
}

TEST_F(ClickElement, FailsWithoutAPauseWhenThePageGaveNothing) {
  bench.payload = "[]";
  EXPECT_EQ(failureText([&] { return click({{"cssSelector", "a"}, {"pauseAfterSucessInSeconds", "p40"}}); }),
            "The JavaScript ended in an exception that nothing caught, the code is likely malformed");
  EXPECT_EQ(bench.steps.back(), "run");
}

TEST_F(ClickElement, PassesFailuresOfTheScriptOn) {
  bench.failureNumber = 5;
  try {
    click({{"cssSelector", "a"}, {"pauseAfterSucessInSeconds", "p40"}});
    FAIL();
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.identity().caseName, "tabNotFound");
  }
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "frontmost lookup", "run"}));
}

TEST_F(ClickElement, ABrowserThatIsNotInFrontEndsTheRunBeforeTheScript) {
  bench.frontmostID = "org.gnome.terminal";
  EXPECT_EQ(failureText([&] { return click({{"cssSelector", "a"}}); }),
            "The currently active app is not a supported browser");
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "frontmost lookup"}));
}

TEST_F(ClickElement, ShowsTheProgramOfARunWithoutRunningIt) {
  const ParameterTexts parameters{
      {"cssSelector", "a"}, {"tabSelection", "specificTab"}, {"targetTab", braveTab}, {"targetContext", "frontmost"}};
  const std::string shown = host::scriptText(bench.catalogue, "ClickElement", parameters);
  EXPECT_EQ(bench.steps, Steps{});
  click(parameters);
  EXPECT_EQ(withoutJobNames(shown), withoutJobNames(bench.scripts.at(0)));

  EXPECT_EQ(
      failureText(
          [&] { return host::scriptText(bench.catalogue, "ClickElement", ParameterTexts{{"cssSelector", "a"}}); }),
      "Which browser is frontmost is found out only when ClickElement runs, and its script depends on the browser: "
      "name one for targetContext, such as chromium.");
}

} // namespace
} // namespace tabwright::actions
