// The programs of the actions on a page, and the results made of answers. The effects of their jobs in a page are tried
// in PageEffectTests.
#include "engine/AppleScriptSnippets.h"
#include "support/ActionBench.h"
#include "support/FailureText.h"

#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string_view>
#include <utility>

namespace tabwright::actions {
namespace {

using Steps = std::vector<std::string>;
using host::ParameterTexts;
using testsupport::failureText;

constexpr const char* unanswered =
    "The JavaScript ended in an exception that nothing caught, the code is likely malformed";

// The shortest parameters of each action on a page.
const struct {
  const char* action;
  ParameterTexts parameters;
} shortest[]{
    {"ClickElement", {{"cssSelector", "a"}}},
    {"ScrollToElement", {{"cssSelector", "a"}}},
    {"ClickLink", {{"label", "More"}}},
    {"WaitForElement", {{"cssSelector", "a"}}},
    {"GetFormFieldValue", {{"fieldTargetSpec", "f"}}},
    {"SetFormFieldValue", {{"targetField", "f"}, {"newValue", ""}}},
    {"SetFormFields", {{"inputDict", "{}"}}},
    {"RunJavascriptInTab", {{"jsCode", " return 1 "}}},
    {"ReloadTab", {}},
    {"GetPageText", {}},
};

// Each job has fresh names for its variables in the page; here they are all alike.
std::string withoutJobNames(const std::string& program) {
  return std::regex_replace(program, std::regex("__[0-9A-HJKMNP-TV-Z]{26}"), "__ULID");
}

class PageActions : public testing::Test {
protected:
  PageActions() { bench.payload = R"(["true"])"; }

  boost::json::value perform(const std::string& action, ParameterTexts parameters, const ParameterTexts& more = {}) {
    parameters.insert(parameters.end(), more.begin(), more.end());
    bench.steps.clear();
    bench.scripts.clear();
    return bench.perform(action, std::move(parameters));
  }

  testsupport::ActionBench bench;
};

TEST_F(PageActions, CarryTheirKnowledgeOfOutlinesOnlyForWhatIsNoSelector) {
  const auto knows = [&](const std::string& selector) {
    perform("ClickElement", {{"cssSelector", selector}});
    return bench.scripts.at(0).find("documentOfNamedElements(false)") != std::string::npos;
  };
  for (const char* selector : {"kqz12", "kqz12\n", "button \"Sign in\"", "\"Sign in\"", R"({"reference":"kqz12"})"})
    EXPECT_TRUE(knows(selector)) << selector;
  for (const char* selector : {"a", "h1", "abc", "kqz0", "abcd1", "a[href=\"x\"]", "div \"x", "Button \"x\""})
    EXPECT_FALSE(knows(selector)) << selector;
  EXPECT_THAT(failureText([&] { perform("ClickElement", {{"cssSelector", R"({"role":"button"})"}}); }),
              testing::HasSubstr("The element has no reference"));
  EXPECT_THAT(failureText([&] { perform("ClickElement", {{"cssSelector", "{"}}); }), testing::HasSubstr("element"));
}

TEST_F(PageActions, TellElementsThatAJobCouldNotName) {
  const auto failed = [&](const char* kind) {
    bench.payload = std::string(R"(["element failure",")") + kind + R"(","kqz1","button \"A\"","button \"B\" kqz2"])";
    return failureText([&] { perform("ClickElement", {{"cssSelector", "kqz1"}}); });
  };
  EXPECT_EQ(failed("gone"), "“kqz1”, button \"A\", is no longer on the page. The nearest: button \"B\" kqz2.");
  EXPECT_EQ(failed("changed"), "“kqz1” was button \"A\" and is button \"B\" kqz2 now, so it was left alone. "
                               "GetPageOutline names it anew.");
  // A page's own list of as many texts is none.
  EXPECT_EQ(failed("other"), "no failure");
}

TEST_F(PageActions, AskForWhatIsMissingBeforeTheyCount) {
  const struct {
    const char* action;
    ParameterTexts parameters;
    const char* question;
  } cases[]{
      {"ScrollToElement", {{"cssSelector", " \n"}}, "cssSelector needs a value. Which element? Give its CSS selector."},
      {"WaitForElement", {}, "cssSelector needs a value. Which element? Give its CSS selector."},
      {"ClickLink", {{"label", "\t"}}, "label needs a value. What's the link text?"},
      {"GetFormFieldValue",
       {{"fieldTargetSpec", ""}},
       "fieldTargetSpec needs a value. Which form field? Give its name, id or CSS selector."},
      {"SetFormFieldValue",
       {{"targetField", " "}, {"newValue", "x"}},
       "targetField needs a value. Please specify the form field"},
      {"SetFormFieldValue", {{"targetField", "f"}}, "newValue needs a value. Please specify the new value"},
      {"SetFormFields", {}, "inputDict needs a value. Which form fields should get which values? Give a JSON object."},
      {"RunJavascriptInTab",
       {{"jsCode", "\n"}},
       "jsCode needs a value. Please enter the Javascript code you want to run."},
  };
  for (const auto& [action, parameters, question] : cases) {
    EXPECT_EQ(failureText([&] { return perform(action, parameters); }), question) << action;
    EXPECT_EQ(bench.steps, Steps{}) << action;
  }
  for (const auto& run : shortest) {
    EXPECT_EQ(failureText([&] { return perform(run.action, run.parameters, {{"tabSelection", "specificTab"}}); }),
              "targetTab needs a value. Which tab? Give one that another action returned.");
    EXPECT_EQ(bench.steps, Steps{}) << run.action;
  }
}

TEST_F(PageActions, PauseAfterASuccessOnly) {
  const struct {
    const char* action;
    bool looksAtAnswer;
  } cases[]{{"ClickElement", false}, {"ScrollToElement", false},  {"ReloadTab", false},
            {"ClickLink", true},     {"SetFormFieldValue", true}, {"SetFormFields", true}};
  const std::pair<const char*, bool> answers[]{{"true", true}, {"TRUE", true},   {"false", false},
                                               {"", false},    {"true ", false}, {"SyntaxError: true", false}};
  for (const auto& [action, looksAtAnswer] : cases) {
    const auto& run =
        *std::ranges::find_if(shortest, [&](const auto& one) { return std::string_view(one.action) == action; });
    for (const auto& [answer, isTrue] : answers) {
      bench.payload = boost::json::serialize(boost::json::array{answer});
      const boost::json::value value =
          perform(action, run.parameters, {{"targetContext", "brave"}, {"pauseAfterSucessInSeconds", "1.5"}});
      const bool isSuccess = isTrue || !looksAtAnswer;
      EXPECT_EQ(value, looksAtAnswer ? boost::json::value(isTrue) : boost::json::value()) << action << " " << answer;
      EXPECT_EQ(bench.steps.back() == "sleep 1.5", isSuccess) << action << " " << answer;
    }
  }
}

TEST_F(PageActions, FailWithoutAPauseWhenThePageGaveNothing) {
  bench.payload = "[]";
  for (const auto& run : shortest) {
    EXPECT_EQ(failureText([&] { return perform(run.action, run.parameters); }), unanswered) << run.action;
    EXPECT_EQ(bench.steps.back(), "run") << run.action;
  }
}

TEST_F(PageActions, ShowTheProgramOfARunWithoutRunningIt) {
  const ParameterTexts parameters{{"cssSelector", "a"}, {"targetTab", "brave:8"}, {"targetContext", "frontmost"}};
  const std::string shown = host::scriptText(bench.catalogue, "ClickElement", parameters);
  EXPECT_EQ(bench.steps, Steps{});
  perform("ClickElement", parameters);
  EXPECT_EQ(withoutJobNames(shown), withoutJobNames(bench.scripts.at(0)));
  EXPECT_EQ(
      failureText(
          [&] { return host::scriptText(bench.catalogue, "ClickElement", ParameterTexts{{"cssSelector", "a"}}); }),
      "Which browser is frontmost is found out only when ClickElement runs, and its script depends on the browser: "
      "name one for targetContext, such as chromium.");
}

TEST_F(PageActions, GetPageTextGivesAPageInPartsThatEndWithABlock) {
  const auto text = [&](const char* html, const ParameterTexts& more = {}) {
    bench.payload = boost::json::serialize(boost::json::array{html, "https://a.test/b/"});
    return perform("GetPageText", more, {{"targetContext", "brave"}});
  };
  EXPECT_EQ(text("<h1>A</h1><a href=c>d*e*</a>"), "# A\n\n[d\\*e\\*](https://a.test/b/c)\n");
  EXPECT_EQ(text("<h1>A</h1><a href=c>d*e*</a>", {{"format", "plain"}}), "A\n\nd*e*\n");
  EXPECT_EQ(bench.steps.back(), "run") << "nothing is left to say";

  const char* const three = "<p>Ünö</p><p>two</p><p>three</p>";
  EXPECT_EQ(text(three, {{"maximumLength", "11"}}), "Ünö\n\ntwo\n\n");
  EXPECT_EQ(bench.steps.back(),
            "notice: These are the characters 0 to 10 of 16. The rest is left out: startAt 10 gives "
            "the next part.");
  EXPECT_EQ(text(three, {{"startAt", "10"}}), "three\n");
  EXPECT_EQ(bench.steps.back(), "notice: These are the characters 10 to 16 of 16.");
  EXPECT_EQ(text(three, {{"startAt", "99"}}), "");
  EXPECT_EQ(text("<p>a", {{"mainContent", "true"}}), "a\n");
  EXPECT_EQ(bench.steps.back(),
            "notice: The page’s main content can’t be told from the rest of it: this is all of it.");
}

TEST_F(PageActions, GetPageTextSaysWhyItReadNothing) {
  const ParameterTexts parameters{{"cssSelector", "#\"n"}, {"targetContext", "brave"}};
  bench.payload = boost::json::serialize(boost::json::array{engine::AppleScriptSnippets::emptyResultMarker()});
  EXPECT_EQ(perform("GetPageText", parameters), "");
  EXPECT_EQ(bench.steps.back(), "notice: Nothing was read: no element of the page matches “#\"n”.");
  bench.payload = R"(["SyntaxError: no selector"])";
  EXPECT_EQ(perform("GetPageText", parameters), "");
  EXPECT_EQ(bench.steps.back(), "notice: Nothing was read. The page said: SyntaxError: no selector");
}

TEST_F(PageActions, SetFormFieldsRefusesADocumentThatIsNoJSONOnceTheRunCounts) {
  EXPECT_EQ(failureText([&] {
              return perform("SetFormFields", {{"inputDict", "{\"a\": 1,\n  b: 2}"}, {"targetContext", "chromium"}});
            }),
            "The JSON document inputDict breaks around line 2, column 3: something that can't stand here.");
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count"}));
}

} // namespace
} // namespace tabwright::actions
