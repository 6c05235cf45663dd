// What the actions on a page declare, ask for and run: programs are compared with the job as it should be written. What
// jobs do in a page is tried in PageEffectTests.
#include "engine/AppleScriptSnippets.h"
#include "support/ActionBench.h"
#include "support/ActionProgram.h"
#include "support/FailureText.h"

#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace tabwright::actions {
namespace {

using Steps = std::vector<std::string>;
using engine::AppleScriptSnippets;
using host::ParameterTexts;
using testsupport::failureText;
using testsupport::withoutJobNames;

constexpr const char* unanswered =
    "The JavaScript ended in an exception that nothing caught, the code is likely malformed";

// One way to run an action and the JavaScript it should plant.
struct JobRun {
  const char* action;
  ParameterTexts parameters;
  std::string javascript;
  double timeout = 1.0;
};

// The shortest parameters of each action on a page.
const JobRun shortest[]{
    {"ClickElement", {{"cssSelector", "a"}}, "return [\n  clickPageElement(\"a\")\n]"},
    {"ScrollToElement", {{"cssSelector", "a"}}, "return [\n  scrollToPageElement(\"a\")\n]"},
    {"ClickLink", {{"label", "More"}}, "return [\n  clickLinkLabelled(\"More\", true)\n]"},
    {"WaitForElement", {{"cssSelector", "a"}}, "return [\n  await waitForPageElement(\"a\", 10.0)\n]", 10.0},
    {"GetFormFieldValue",
     {{"fieldTargetSpec", "f"}},
     "return [\n  getFormFieldValue(\n    \"f\",\n    \"elementNameAttribute\"\n  )\n]"},
    {"SetFormFieldValue",
     {{"targetField", "f"}, {"newValue", ""}},
     "return [\n  setFormFieldValue(\n    \"f\",\n    \"elementNameAttribute\",\n    ``,\n    false,\n    false\n  "
     ")\n]"},
    {"SetFormFields",
     {{"inputDict", "{}"}},
     "return [\n  setFormFields(\n    {},\n    \"elementNameAttribute\",\n    false,\n    false\n  )\n]"},
    {"RunJavascriptInTab", {{"jsCode", " return 1 "}}, " return 1 "},
};

class PageActions : public testing::Test {
protected:
  PageActions() { bench.payload = R"(["true"])"; }

  boost::json::value perform(const std::string& action, ParameterTexts parameters, const ParameterTexts& more = {}) {
    parameters.insert(parameters.end(), more.begin(), more.end());
    bench.steps.clear();
    bench.scripts.clear();
    return bench.perform(action, std::move(parameters));
  }

  void expectFrontJob(const JobRun& run) {
    perform(run.action, run.parameters, {{"targetContext", "chromium"}});
    EXPECT_EQ(withoutJobNames(bench.scripts.at(0)),
              testsupport::programOf(bench.scriptServices,
                                     AppleScriptSnippets::jobForFrontTab(run.javascript, run.timeout, 0.2),
                                     "org.chromium.chromium"))
        << run.action;
  }

  testsupport::ActionBench bench;
};

// The parameters of an action in their order, each with its default; "?" marks optional ones, "'" those whose text
// stays as it is typed, and the first has the end of its description's key.
std::string declarationsOf(const host::Catalogue& catalogue, const char* name) {
  const auto action = catalogue.make(name);
  const std::string description = action->parameters().front()->declaration().description.key;
  std::string text = action->table() + ": " + description.substr(description.rfind("description"));
  for (const intents::ParameterBase* parameter : action->parameters()) {
    const intents::ParameterDeclaration& declaration = parameter->declaration();
    text += " " + declaration.name + (declaration.presence == intents::Presence::optional ? "?" : "") +
            (declaration.textInput && !declaration.textInput->multiline ? "'" : "");
    if (declaration.defaultValue)
      text += "=" + boost::json::serialize(*declaration.defaultValue);
  }
  return text;
}

TEST_F(PageActions, DeclareTheirParametersInOrder) {
  const std::string tab = " targetContext tabSelection=\"frontTab\" targetTab?";
  const std::string onPage = "Intents-Web Pages: description.variant.tabSelection" + tab;
  const std::string pause = " pauseAfterSucessInSeconds=\"p00\"";
  const std::string events = " shouldFireChangeEvent=false shouldSubmitParentForm=false" + pause;
  const std::pair<const char*, std::string> cases[]{
      {"ClickElement", onPage + " cssSelector'" + pause},
      {"ScrollToElement", onPage + " cssSelector'" + pause},
      {"ClickLink", onPage + " linkSelection=\"labelExact\" label'" + pause},
      {"WaitForElement", onPage + " cssSelector' timeout=\"p10\" onFailure=\"raiseError\""},
      {"GetFormFieldValue",
       "Intents-Web Pages: description" + tab + " formFieldSelection=\"elementNameAttribute\" fieldTargetSpec'"},
      {"SetFormFieldValue", onPage + " formFieldSelection=\"elementNameAttribute\" targetField' newValue" + events},
      {"SetFormFields", onPage + " formFieldsSelection=\"elementNameAttribute\" inputDict" + events},
      {"RunJavascriptInTab", onPage + " jsCode'"},
      {"RunAppleScript", "Intents-Browsers: description targetContext script'"},
  };
  for (const auto& [action, declarations] : cases)
    EXPECT_EQ(declarationsOf(bench.catalogue, action), declarations) << action;
}

TEST_F(PageActions, PlantAJobInTheFrontTab) {
  for (const JobRun& run : shortest)
    expectFrontJob(run);
}

TEST_F(PageActions, PlantAJobInASpecificTabOfEitherFamily) {
  const struct {
    const char* id;
    const char* tab;
  } tabs[]{{"com.brave.browser", R"({"targetContext":"brave","fullID":"com.brave.browser:8"})"},
           {"com.apple.safari", R"({"targetContext":"safari","fullID":"com.apple.safari:17:3"})"}};
  for (const JobRun& run : shortest) {
    for (const auto& [id, tab] : tabs) {
      const std::string fullID = std::string(id) + (id == tabs[0].id ? ":8" : ":17:3");
      perform(run.action, run.parameters,
              {{"tabSelection", "specificTab"}, {"targetTab", tab}, {"targetContext", "chromium"}});
      EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "run"}));
      EXPECT_EQ(
          withoutJobNames(bench.scripts.at(0)),
          testsupport::programOf(bench.scriptServices,
                                 AppleScriptSnippets::jobForRequestedTab(fullID, run.javascript, run.timeout, 0.2), id))
          << run.action;
    }
  }
}

TEST_F(PageActions, WriteWhatTheyAreGivenIntoTheJob) {
  const JobRun runs[]{
      {"ScrollToElement",
       {{"cssSelector", " a[href=\"\\x\"] "}},
       "return [\n  scrollToPageElement(\" a[href=\\\"\\\\x\\\"] \")\n]"},
      {"ClickLink",
       {{"label", " \"a\\ "}, {"linkSelection", "labelContaining"}},
       "return [\n  clickLinkLabelled(\" \\\"a\\\\ \", false)\n]"},
      {"WaitForElement",
       {{"cssSelector", "\"\\"}, {"timeout", "p00"}},
       "return [\n  await waitForPageElement(\"\\\"\\\\\", 0.0)\n]",
       0.0},
      {"WaitForElement",
       {{"cssSelector", "a"}, {"timeout", "20.0"}},
       "return [\n  await waitForPageElement(\"a\", 20.0)\n]",
       20.0},
      {"GetFormFieldValue",
       {{"fieldTargetSpec", "\"\\"}, {"formFieldSelection", "elementIDAttribute"}},
       "return [\n  getFormFieldValue(\n    \"\\\"\\\\\",\n    \"elementIDAttribute\"\n  )\n]"},
      {"SetFormFieldValue",
       {{"targetField", "\"\\`"},
        {"newValue", "\"\\`${a}\nb"},
        {"formFieldSelection", "cssSelector"},
        {"shouldFireChangeEvent", "yes"}},
       "return [\n  setFormFieldValue(\n    \"\\\"\\\\`\",\n    \"cssSelector\",\n    `\\\"\\\\\\`${a}\nb`,\n    "
       "true,\n"
       "    false\n  )\n]"},
      {"SetFormFields",
       {{"inputDict", "{ \"b\": [1.50, \"/`\"],\n\"a\": 12345678901234567890123 }"},
        {"formFieldsSelection", "elementIDAttribute"},
        {"shouldSubmitParentForm", "true"}},
       "return [\n  setFormFields(\n    {\"b\":[1.50,\"\\/`\"],\"a\":12345678901234567890123},\n"
       "    \"elementIDAttribute\",\n    false,\n    true\n  )\n]"},
      {"RunJavascriptInTab", {{"jsCode", "const a = \"\\n\"\nreturn a"}}, "const a = \"\\n\"\nreturn a"},
  };
  for (const JobRun& run : runs)
    expectFrontJob(run);
}

TEST_F(PageActions, PollAsLongAsTheyWait) {
  const std::pair<const char*, const char*> cases[]{{"p00", "1"}, {"p02", "11"}, {"p10", "51"}, {"p20", "101"}};
  for (const auto& [timeout, polls] : cases) {
    perform("WaitForElement", {{"cssSelector", "a"}, {"timeout", timeout}});
    EXPECT_NE(bench.scripts.at(0).find(std::string("\nrepeat ") + polls + " times\n"), std::string::npos) << timeout;
  }
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
  for (const JobRun& run : shortest) {
    EXPECT_EQ(failureText([&] { return perform(run.action, run.parameters, {{"tabSelection", "specificTab"}}); }),
              "targetTab needs a value. Which tab? Give one that another action returned.");
    EXPECT_EQ(bench.steps, Steps{}) << run.action;
  }
}

TEST_F(PageActions, PauseAfterASuccessOnly) {
  const struct {
    const char* action;
    bool looksAtAnswer;
  } cases[]{{"ScrollToElement", false}, {"ClickLink", true}, {"SetFormFieldValue", true}, {"SetFormFields", true}};
  const std::pair<const char*, bool> answers[]{{"true", true}, {"TRUE", true},   {"false", false},
                                               {"", false},    {"true ", false}, {"SyntaxError: true", false}};
  for (const auto& [action, looksAtAnswer] : cases) {
    const JobRun& run = *std::ranges::find(shortest, std::string_view(action), &JobRun::action);
    for (const auto& [answer, isTrue] : answers) {
      bench.payload = boost::json::serialize(boost::json::array{answer});
      const boost::json::value value =
          perform(action, run.parameters, {{"targetContext", "brave"}, {"pauseAfterSucessInSeconds", "1.5"}});
      const bool isSuccess = isTrue || !looksAtAnswer;
      EXPECT_EQ(value, looksAtAnswer ? boost::json::value(isTrue) : boost::json::value()) << action << " " << answer;
      EXPECT_EQ(bench.steps,
                isSuccess ? (Steps{"schedule", "count", "run", "sleep 1.5"}) : (Steps{"schedule", "count", "run"}))
          << action << " " << answer;
    }
  }
}

TEST_F(PageActions, FailWithoutAPauseWhenThePageGaveNothing) {
  bench.payload = "[]";
  for (const JobRun& run : shortest) {
    EXPECT_EQ(failureText([&] { return perform(run.action, run.parameters); }), unanswered) << run.action;
    EXPECT_EQ(bench.steps.back(), "run") << run.action;
  }
}

TEST_F(PageActions, WaitForElementFailsOrGivesFalseAsItIsTold) {
  EXPECT_EQ(perform("WaitForElement", {{"cssSelector", "a"}}), true);
  bench.payload = R"(["false"])";
  EXPECT_EQ(failureText([&] { return perform("WaitForElement", {{"cssSelector", "a"}}); }),
            "The requested page element could not be found");
  EXPECT_EQ(perform("WaitForElement", {{"cssSelector", "a"}, {"onFailure", "returnFalse"}}), false);
}

TEST_F(PageActions, GetFormFieldValueGivesTheAnswerAsItStands) {
  for (const char* answer : {"", "false", " a\n\"b\" "}) {
    bench.payload = boost::json::serialize(boost::json::array{answer});
    EXPECT_EQ(perform("GetFormFieldValue", {{"fieldTargetSpec", "f"}}), answer);
  }
}

TEST_F(PageActions, SetFormFieldsRefusesADocumentThatIsNoJSONOnceTheRunCounts) {
  EXPECT_EQ(failureText([&] {
              return perform("SetFormFields", {{"inputDict", "{\"a\": 1,\n  b: 2}"}, {"targetContext", "chromium"}});
            }),
            "The JSON document breaks around line 2, column 3: something that can't stand here.");
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count"}));
}

} // namespace
} // namespace tabwright::actions
