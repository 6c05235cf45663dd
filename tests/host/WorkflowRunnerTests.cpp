// Workflows over script tasks that answer by themselves: what runs, with which values, and how a failure is told.
#include "host/workflow/WorkflowCheck.h"
#include "host/workflow/WorkflowReader.h"
#include "host/workflow/WorkflowRunner.h"
#include "support/ActionBench.h"

#include <boost/json/string.hpp>
#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::host::workflow {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class Recorder final : public WorkflowObserver {
public:
  std::vector<std::string> lines; ///< what was printed
  std::vector<std::string> steps; ///< "LINE" at the begin, "LINE." and "LINE!" at the end, "LINE 1/2" for a round

  void stepBegins(const Step& step, const Variables&, std::size_t) override {
    steps.push_back(std::to_string(step.place.line));
  }
  void stepEnds(const Step& step, const std::string& failure) override {
    steps.push_back(std::to_string(step.place.line) + (failure.empty() ? "." : "!"));
  }
  void roundBegins(const Step& step, std::size_t, std::size_t round, std::size_t rounds) override {
    steps.push_back(fmt::format("{} {}/{}", step.place.line, round, rounds));
  }
  void noticed(const Step& step, const platform::Notice& notice) override {
    steps.push_back(fmt::format("{}: {}", step.place.line, notice.sentence));
  }
  void printed(const std::string& text) override { lines.push_back(text); }
};

class WorkflowRun : public testing::Test {
protected:
  std::vector<std::string> run(const std::string& source) {
    const Workflow workflow = readWorkflow(source);
    checkWorkflow(workflow, bench.catalogue);
    testsupport::runTask(runWorkflow(workflow, firstVariables(workflow, {}), bench.catalogue, bench.actionHost,
                                     recorder, [](const std::string& path) { return "[\"of " + path + "\"]"; }));
    return recorder.lines;
  }

  /// "LINE: sentence" of the step that failed.
  std::string failureOf(const std::string& source) {
    try {
      run(source);
    } catch (const StepFailure& failure) {
      return fmt::format("{}: {}", failure.place().line, failure.errorDescription());
    }
    return "no failure";
  }

  testsupport::ActionBench bench;
  Recorder recorder;
};

constexpr const char* twoTabs = R"([{"tabID":"8","tabTitle":"News","tabURL":"https://news.test/"},)"
                                R"({"tabID":"9","tabTitle":"$${x}","tabURL":"https://b.test/"}])";

TEST_F(WorkflowRun, HandsResultsOnToTheStepsBehind) {
  bench.payload = twoTabs;
  EXPECT_THAT(run(R"(variables: {browser: chromium}
steps:
  - action: GetListOfTabs
    parameters: {targetContext: "${browser}"}
    as: tabs
  - print: ${tabs.count} tabs, the first is “${tabs.0.title}”
  - repeat: ${tabs}
    as: tab
    steps:
      - print: ${tab.title}
  - print: ${tabs.0.targetContext}
)"),
              ElementsAre("2 tabs, the first is “News”", "News", "$${x}",
                          R"({"id":"org.chromium.chromium","name":"Chromium"})"));
  EXPECT_THAT(recorder.steps,
              ElementsAre("3", "3.", "6", "6.", "7", "7 1/2", "10", "10.", "7 2/2", "10", "10.", "7.", "11", "11."));
}

TEST_F(WorkflowRun, FillsParametersWithValuesOfAnyKind) {
  bench.payload = R"(["false"])";
  run(R"(variables:
  tab: {targetContext: {id: com.brave.browser, name: Brave}, fullID: "com.brave.browser:8"}
  nothing: ""
steps:
  - set: {none: ~}
  - action: ClickElement
    parameters:
      targetTab: ${tab}
      cssSelector: 'input[value="$${selector}"] #${nothing}'
      pauseAfterSucessInSeconds: ${none}
)");
  ASSERT_EQ(bench.scripts.size(), 1U);
  EXPECT_THAT(bench.scripts.front(), HasSubstr("set tabID to \"8\""));
  EXPECT_THAT(bench.scripts.front(), HasSubstr(R"(${selector})"));
  EXPECT_THAT(recorder.steps, testing::Contains(StartsWith("6: Nothing was clicked: no element of the page matches")));
}

TEST_F(WorkflowRun, ReadsAFileOnlyWhereTheWorkflowItselfMarksIt) {
  bench.payload = R"(["true"])";
  run(R"(variables: {folder: forms, at: "@/etc/hostname"}
steps:
  - action: SetFormFields
    parameters: {targetContext: chromium, inputdict: "@${folder}/answers.json"}
  - action: SetFormFields
    parameters: {targetContext: chromium, inputDict: ["${at}"]}
  - try:
      - action: SetFormFields
        parameters: {targetContext: chromium, inputDict: "${at}"}
    otherwise:
      - print: refused
)");
  ASSERT_EQ(bench.scripts.size(), 2U);
  EXPECT_THAT(bench.scripts.front(), HasSubstr("of forms"));
  EXPECT_THAT(bench.scripts.back(), HasSubstr("@"));
  EXPECT_THAT(recorder.lines, ElementsAre("refused"));
}

TEST_F(WorkflowRun, DecidesByValues) {
  EXPECT_THAT(
      run(R"(variables: {no: [0, "", [], {}, false], yes: [1, "0", [0], {a: 0}, true], word: tabwright, list: [1, b]}
steps:
  - repeat: ${no}
    as: value
    steps:
      - if: ${value}
        then: [{print: wrong}]
  - repeat: ${yes}
    as: value
    steps:
      - if: {not: "${value}"}
        then: [{print: wrong}]
  - if: {all: [{value: "${word}", contains: wright}, {value: "${list}", contains: "1"}, {value: 1, equals: "1"}]}
    then: [{print: all hold}]
  - if: {any: [{value: "${list}", contains: c}, {value: "${list}", equals: [1]}, {value: "${word}", equals: Tabwright}]}
    then: [{print: wrong}]
    else: [{print: none holds}]
)"),
      ElementsAre("all hold", "none holds"));
}

TEST_F(WorkflowRun, GoesIntoJsonThatATextHolds) {
  bench.payload = R"(["[{\"name\":\"a\"},{\"name\":\"b\"}]"])";
  EXPECT_THAT(run(R"(steps:
  - action: RunJavascriptInTab
    parameters: {jsCode: return JSON.stringify(x)}
    as: answer
  - print: ${answer.0.count} ${answer.0.1.name}
  - repeat: ${answer.0}
    as: item
    steps: [{print: "${item.name}"}]
)"),
              ElementsAre("2 b", "a", "b"));
}

TEST_F(WorkflowRun, EndsAtTheStepThatFails) {
  bench.failureNumber = 2;
  EXPECT_EQ(failureOf(R"(steps:
  - print: before
  - repeat: [a, b]
    as: letter
    steps:
      - if: {value: "${letter}", equals: b}
        then:
          - action: ClickElement
            parameters: {cssSelector: x}
  - print: behind
)"),
            "8: ClickElement failed (round 2 of the repeat in line 3): The browser doesn't have any open windows");
  EXPECT_THAT(recorder.lines, ElementsAre("before"));
  EXPECT_THAT(recorder.steps, ElementsAre("2", "2.", "3", "3 1/2", "6", "6.", "3 2/2", "6", "8", "8!", "6!", "3!"));
}

TEST_F(WorkflowRun, TriesAndKnowsWhyItFailed) {
  bench.failureNumber = 2;
  EXPECT_THAT(run(R"(variables: {list: [1]}
steps:
  - try:
      - repeat: ${list}
        as: x
        steps:
          - action: ClickElement
            parameters: {cssSelector: x}
      - print: not reached
    otherwise:
      - print: ${error.case} ${error.number}
      - print: ${error.message}
  - try:
      - print: ${list.7}
  - print: on
)"),
              ElementsAre("noOpenWindows 2", "The browser doesn't have any open windows", "on"));
}

TEST_F(WorkflowRun, TellsOfValuesThatAreNotThere) {
  const auto step = [](const char* text) {
    return std::string("variables: {list: [1], map: {a: 1}, word: x}\nsteps:\n") + text;
  };
  EXPECT_EQ(failureOf(step("  - print: ${list.1}")), "3: print failed: ${list} is a list of 1: it has no “1”.");
  EXPECT_EQ(failureOf(step("  - print: ${map.b}")), "3: print failed: ${map} has no member “b”.");
  EXPECT_EQ(failureOf(step("  - print: ${map.a.b}")), "3: print failed: ${map.a} is 1, which has no members.");
  EXPECT_EQ(failureOf(step("  - repeat: ${word}\n    as: i\n    steps: []")),
            "3: repeat failed: What is repeated over is a list, not x.");
  EXPECT_EQ(failureOf(step("  - append: {word: 1}")),
            "3: append failed: “word” is no list that something can be added to.");
  EXPECT_EQ(failureOf(step("  - if: ''\n    then: [{set: {y: 1}}]\n  - print: ${y}")),
            "5: print failed: ${y} has no value: the step that gives it has not run.");
  EXPECT_THAT(recorder.lines, IsEmpty());
}

TEST(WorkflowValues, AreBoundedAsAWholeSinceStepsThatGoRoundCouldDoubleThem) {
  const Variables variables{{"t", boost::json::value(boost::json::string(100, 'x'))}};
  const Expression twice = textExpression("${t}${t}", {});
  const Expression list{Expression::List{{textExpression("${t}", {}), textExpression("${t}", {})}}, {}};
  for (const Expression& doubled : {twice, list}) {
    EXPECT_NO_THROW(static_cast<void>(evaluate(doubled, variables, 300)));
    EXPECT_THROW(static_cast<void>(evaluate(doubled, variables, 199)), Problem);
  }
}

} // namespace
} // namespace tabwright::host::workflow
