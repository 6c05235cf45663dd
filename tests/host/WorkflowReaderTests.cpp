// The forms of a workflow's file, and the mistakes in it, which are told by place and all at once.
#include "host/workflow/StepWords.h"
#include "host/workflow/WorkflowCheck.h"
#include "host/workflow/WorkflowReader.h"
#include "support/ActionBench.h"
#include "support/FailureText.h"

#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::host::workflow {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class WorkflowFile : public testing::Test {
protected:
  /// All that reading and checking complain of, as "LINE: the text there: sentence".
  std::vector<std::string> problemsOf(const std::string& source) {
    std::vector<std::string> told;
    try {
      checkWorkflow(readWorkflow(source), bench.catalogue);
    } catch (const InvalidWorkflow& invalid) {
      for (const Problem& problem : invalid.problems())
        told.push_back(fmt::format("{}: {}: {}", problem.place.line,
                                   source.substr(problem.place.offset, problem.place.length), problem.sentence));
    }
    return told;
  }

  testsupport::ActionBench bench;
};

TEST_F(WorkflowFile, IsReadWithTypesByYamlsCoreSchema) {
  const Workflow workflow = readWorkflow(R"(
title: T
variables: {a: 5, b: "5", c: 0123, d: true, e: [1.5, -2, x], f: {g: ~}, h: '', i: 99999999999999999999}
steps: [{set: {x: 1}}]
)");
  const Variables variables = [&] {
    Variables all;
    for (const NamedExpression& one : workflow.variables)
      all[one.name.text] = evaluate(one.value, {});
    return all;
  }();
  EXPECT_EQ(workflow.title, "T");
  const auto json = [](const char* text) { return boost::json::parse(text); };
  EXPECT_EQ(variables.at("a"), json("5"));
  EXPECT_EQ(variables.at("b"), json(R"("5")"));
  EXPECT_EQ(variables.at("c"), json(R"("0123")"));
  EXPECT_EQ(variables.at("d"), json("true"));
  EXPECT_EQ(variables.at("e"), json(R"([1.5,-2,"x"])"));
  EXPECT_EQ(variables.at("f"), json(R"({"g":null})"));
  EXPECT_EQ(variables.at("h"), json(R"("")"));
  EXPECT_EQ(variables.at("i"), json("1e20"));
}

TEST_F(WorkflowFile, TellsEveryMistakeOfItsFormWithItsPlace) {
  EXPECT_THAT(
      problemsOf(R"(steps:
  - action: ClickElement
    parametres: {cssSelector: a}
  - acton: ClickElement
  - repeat: [1]
    as: a b
    steps: []
  - print: ${}
  - print: "${a"
  - if: {value: 1, equal: 1}
    then: []
  - set: [1]
  - append: {a: 1, b: 2}
  - print: 1
    print: 2
)"),
      ElementsAre(StartsWith("3: parametres: A step “action” has no key “parametres”. Did you mean parameters?"),
                  StartsWith("4: a: A step has one of the keys action, repeat, if, try, set, append, print. Did "
                             "you mean action?"),
                  StartsWith("6: a b: “a b” can’t be a variable’s name"), StartsWith("8: ${}: ${} is no path"),
                  AllOf(StartsWith("9: "), HasSubstr("“${” has no end")),
                  StartsWith("10: equal: A condition has no key “equal”. Did you mean equals"),
                  StartsWith("12: [: “set” is a map of names and values, not a list."),
                  AllOf(StartsWith("13: "), HasSubstr("“append” names one list")),
                  StartsWith("15: print: “print” is given twice.")));
}

TEST_F(WorkflowFile, MustBeOneWorkflowInYaml) {
  struct Case {
    const char* source;
    const char* problem;
  };
  for (const Case& one : {Case{"", "A workflow is a map with the keys title, variables, steps, not nothing."},
                          {"- a", "A workflow is a map with the keys title, variables, steps, not a list."},
                          {"title: a", "A workflow has the key “steps”"},
                          {"steps: []", "There are no steps."},
                          {"steps: [{print: 1}]\n---\nsteps: []", "A file holds one workflow"},
                          {"steps:\n  - print: [${a}]", "Inside of [] and {}, a text with ${…} stands in quotes."},
                          {"steps:\n  - print: a: b", "A text with a colon and a blank in it stands in quotes"},
                          {"\xEF\xBB\xBFsteps: []", "byte order mark"},
                          {"steps:\n  - print: \xFF", "a byte here belongs to no character"},
                          {"variables: {a: \"${b}\"}\nsteps: [{print: 1}]", "can’t come from others"},
                          {"steps: [{print: *a}]", "This is no YAML"},
                          {", a", "can’t begin like this"}})
    EXPECT_THAT(problemsOf(one.source), ElementsAre(HasSubstr(one.problem))) << one.source;
}

TEST_F(WorkflowFile, IsBoundedWhateverItsAliasesSay) {
  std::string laughs = "variables:\n  a0: &a0 [x, x, x, x, x, x, x, x, x, x]\n";
  for (int level = 1; level < 12; ++level) {
    std::string items;
    for (int item = 0; item < 10; ++item)
      items += fmt::format("*a{}, ", level - 1);
    laughs += fmt::format("  a{}: &a{} [{}]\n", level, level, items);
  }
  EXPECT_THAT(problemsOf(laughs + "steps: [{print: 1}]"), Contains(HasSubstr("more than 100000 values")));
  EXPECT_THAT(problemsOf("steps: &s\n  - repeat: []\n    as: x\n    steps: *s\n"), ElementsAre(HasSubstr("nested")));
  EXPECT_EQ(problemsOf("steps: [{print: " + std::string(200, '[') + std::string(200, ']') + "}]").size(), 1U);
}

TEST_F(WorkflowFile, IsCheckedAgainstTheCatalogue) {
  EXPECT_THAT(
      problemsOf(R"(steps:
  - action: ClickElemnt
  - action: ClickElement
    as: x
  - action: GetListOfTabs
    parameters: {tabPrivacy: secret, foo: bar, urlFilter: contains}
  - action: GetDetailsOfTab
    parameters: {tabSelection: specificTab, targettab: 5, targetTab: 6}
  - action: ClickElement
    parameters: {cssSelector: [a]}
)"),
      ElementsAre(
          StartsWith("2: ClickElemnt: There is no action"), StartsWith("3: ClickElement: cssSelector needs a value."),
          StartsWith("4: x: ClickElement gives no result."), StartsWith("5: GetListOfTabs: pageURL needs a value."),
          StartsWith("6: secret: tabPrivacy can't be \"secret\""), StartsWith("6: foo: GetListOfTabs has no parameter"),
          StartsWith("8: 5: targetTab can't be"), StartsWith("8: targetTab: targetTab is given twice."),
          StartsWith("8: 6: targetTab can't be"), StartsWith("10: [: cssSelector is a text, not a list.")));
}

TEST_F(WorkflowFile, MayGiveParametersThatOnlyTheRunKnows) {
  EXPECT_THAT(problemsOf(R"(variables: {which: specificTab, selector: a, none: null}
steps:
  - action: GetListOfTabs
    as: tabs
  - action: ClickElement
    parameters: {tabSelection: specificTab, targetTab: "${tabs.0}", cssSelector: "${selector}"}
  - action: CloseTab
    parameters: {tabSelection: "${which}"} # perhaps without targetTab
  - action: ClickElement
    parameters: {tabSelection: "${which}"}
)"),
              ElementsAre(StartsWith("9: ClickElement: cssSelector needs a value.")));
}

TEST_F(WorkflowFile, IsCheckedForVariablesAndTheirMembers) {
  EXPECT_THAT(
      problemsOf(R"(variables: {free: {}}
steps:
  - print: ${tabs} # before it is given
  - action: GetListOfTabs
    as: tabs
  - print: ${tabs.count} ${tabs.0.title} ${free.any.thing}
  - print: ${tabs.title}
  - print: ${tabs.0.titel}
  - print: ${tabs.0.isLoading.x}
  - repeat: ${tabs.0}
    as: tab
    steps: []
  - repeat: ${tabs}
    as: tab
    steps:
      - print: ${tab.targetContext.name} ${tab.nme}
  - append: {lists: 1}
  - repeat: tab
    as: item
    steps: []
  - print: ${error}
  - try: []
    otherwise:
      - print: ${error.message}
)"),
      ElementsAre(StartsWith("3: ${tabs}: No earlier step gives “tabs”."),
                  StartsWith("7: ${tabs.title}: tabs is a list"),
                  StartsWith("8: ${tabs.0.titel}: tabs.0, a BrowserTabEntity, has no “titel”. Did you mean title?"),
                  HasSubstr("tabs.0.isLoading is of type boolean, which has no members."),
                  HasSubstr("What is repeated over is a list; this is of type BrowserTabEntity."),
                  HasSubstr("has no “nme”. It has targetContext, title, url,"),
                  StartsWith("17: lists: No earlier step gives “lists”."),
                  StartsWith("18: tab: What is repeated over is a list. The variable is ${tab}."),
                  StartsWith("21: ${error}: No earlier step gives “error”.")));
}

TEST_F(WorkflowFile, TakesVariablesFromOutside) {
  const Workflow workflow = readWorkflow("variables: {a: 1, b: [x], c: }\nsteps: [{print: 1}]");
  const Variables variables = firstVariables(workflow, {{"a", "2"}, {"b", R"(["y"])"}, {"c", "[z"}});
  EXPECT_EQ(variables.at("a"), "2");
  EXPECT_EQ(variables.at("b"), boost::json::array{"y"});
  EXPECT_EQ(variables.at("c"), "[z");
  using testsupport::failureText;
  EXPECT_EQ(failureText([&] { return firstVariables(workflow, {}); }),
            "The workflow needs a value of “c”: give it with --set c=VALUE.");
  EXPECT_EQ(failureText([&] { return firstVariables(workflow, {{"c", "1"}, {"bb", "1"}}); }),
            "The workflow has no variable “bb”. Did you mean b?");
  EXPECT_EQ(failureText([&] { return firstVariables(workflow, {{"c", "\xFF"}}); }),
            "The variable “c” takes text in UTF-8.");
  for (const char* text : {"y", "5"})
    EXPECT_EQ(failureText([&] { return firstVariables(workflow, {{"c", "1"}, {"b", text}}); }),
              "The variable “b” is a list or a map: give it as JSON.");
}

TEST_F(WorkflowFile, IsToldAsAnOutline) {
  const Workflow workflow = readWorkflow(R"(variables: {browser: chromium, n: 1}
steps:
  - action: GetListOfTabs
    parameters: {targetContext: "${browser}"}
    as: tabs
  - name: All of ${browser}
    repeat: ${tabs}
    as: tab
    steps:
      - if: {all: [{not: "${tab.isLoading}"}, {any: ["${n}", {value: a, equals: b}]}]}
        then:
          - try:
              - print: $${x} ${tab.title}
            otherwise:
              - set: {n: 2}
        else:
          - append: {tabs: [1, {a: "${n}"}]}
)");
  EXPECT_EQ(outline(workflow, firstVariables(workflow, {})), R"(   3  GetListOfTabs targetContext: chromium → tabs
   7  All of chromium: repeat for each tab in ${tabs}
  10    if (not ${tab.isLoading} and (${n} or a equals b))
  12      try
  13        print ${x} ${tab.title}
          otherwise
  15        set n: 2
        else
  17      append [1, {a: ${n}}] to tabs
)");
}

} // namespace
} // namespace tabwright::host::workflow
