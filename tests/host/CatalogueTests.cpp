#include "host/ActionHelp.h"
#include "host/Catalogue.h"
#include "host/ExampleCommands.h"
#include "host/JsonSchema.h"
#include "host/NearestNames.h"
#include "support/ActionBench.h"
#include "support/FailureText.h"
#include "support/GoldenFile.h"

#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace tabwright::host {
namespace {

using testsupport::failureText;

class Catalogued : public testing::Test {
protected:
  testsupport::ActionBench bench;
};

// JSON with a line per value, so that a changed golden file shows what changed.
std::string pretty(const boost::json::value& json, const std::string& indent = "") {
  const std::string inner = indent + "  ";
  std::string text;
  if (const auto* object = json.if_object(); object && !object->empty()) {
    for (const auto& [key, value] : *object)
      text += (text.empty() ? "{\n" : ",\n") + inner + boost::json::serialize(key) + ": " + pretty(value, inner);
    return text + "\n" + indent + "}";
  }
  if (const auto* list = json.if_array(); list && !list->empty() && list->front().is_object()) {
    for (const auto& value : *list)
      text += (text.empty() ? "[\n" : ",\n") + inner + pretty(value, inner);
    return text + "\n" + indent + "]";
  }
  return boost::json::serialize(json);
}

TEST_F(Catalogued, ActionsAreFoundByShortNameWhateverItsCase) {
  for (const std::string& name : bench.catalogue.names())
    EXPECT_EQ(bench.catalogue.make(name)->name(), name);
  EXPECT_EQ(bench.catalogue.make("clickelement")->name(), "ClickElement");
  EXPECT_EQ(bench.catalogue.make("Oskel_Beta_ClickElement")->name(), "ClickElement");
}

TEST_F(Catalogued, AMissNamesTheNearest) {
  const auto miss = [&](const char* name) { return failureText([&] { return bench.catalogue.make(name); }); };
  EXPECT_EQ(miss("ClickElemnt"), "There is no action “ClickElemnt”. Did you mean ClickElement?");
  EXPECT_EQ(miss("tabs"), "There is no action “tabs”. Did you mean GetListOfTabs?");
  EXPECT_EQ(miss("Oskel_Beta_Click"), "There is no action “Oskel_Beta_Click”. Did you mean ClickElement or ClickLink?");
  EXPECT_EQ(miss("frobnicate"), "There is no action “frobnicate”. `tabwright actions` lists them all.");
  EXPECT_EQ(miss(""), "There is no action “”. `tabwright actions` lists them all.");
}

TEST(NearestNames, BestComesFirstAndNoMoreThanThree) {
  const std::vector<std::string> names{"CloseTab", "CreateTab", "FocusTab", "ReloadTab", "CloseWindow"};
  EXPECT_EQ(nearestNames("closetab", names), (std::vector<std::string>{"CloseTab"}));
  EXPECT_EQ(nearestNames("Tab", names), (std::vector<std::string>{"CloseTab", "CreateTab", "FocusTab"}));
  EXPECT_EQ(didYouMean("Close", names, ""), " Did you mean CloseTab or CloseWindow?");
  EXPECT_EQ(didYouMean("Tab", names, ""), " Did you mean CloseTab, CreateTab or FocusTab?");
}

// Each has a kind of parameter that those before it lack.
// Between them they have parameters and results of all kinds; docs/actions.md holds every action.
const std::vector<std::string> actionsOfEachKind{"GetListOfTabs", "SetFormFields"};

TEST_F(Catalogued, SchemasFollowFromTheDeclarations) {
  for (const std::string& name : actionsOfEachKind) {
    const auto action = bench.catalogue.make(name);
    testsupport::expectGolden(
        pretty(boost::json::object{{"input", inputSchema(*action)}, {"output", outputSchema(*action)}}) + "\n",
        "host/golden/" + name + ".schema.json");
  }
}

TEST_F(Catalogued, HelpFollowsFromTheDeclarations) {
  testsupport::expectGolden(catalogueHelp(bench.catalogue), "host/golden/actions.help.txt");
  for (const std::string& name : actionsOfEachKind)
    testsupport::expectGolden(actionHelp(bench.catalogue, name), "host/golden/" + name + ".help.txt");
}

// The words that a POSIX shell makes of a command line without expansions.
std::vector<std::string> shellWords(const std::string& line) {
  std::vector<std::string> words{""};
  bool isQuoted = false;
  for (std::size_t index = 0; index < line.size(); ++index) {
    if (line[index] == '\'')
      isQuoted = !isQuoted;
    else if (line[index] == '\\' && !isQuoted)
      words.back() += line[++index];
    else if (line[index] == ' ' && !isQuoted)
      words.emplace_back();
    else
      words.back() += line[index];
  }
  return words;
}

TEST_F(Catalogued, ExamplesCanBeRunAsPrinted) {
  for (const std::string& name : bench.catalogue.names()) {
    for (const ExampleCommand& example : exampleCommands(bench.catalogue, name)) {
      const std::vector<std::string> words = shellWords(example.commandLine);
      ASSERT_GE(words.size(), 3U);
      EXPECT_EQ(words[1] + " " + words[2], "run " + name);
      ParameterTexts parameters;
      for (std::size_t index = 3; index + 1 < words.size(); index += 2)
        parameters.emplace_back(words[index].substr(2), words[index + 1]);
      EXPECT_EQ(parameters, example.parameters) << example.commandLine;

      const auto action = bench.catalogue.make(name);
      EXPECT_NO_THROW(readParameters(*action, parameters)) << example.commandLine;
      EXPECT_EQ(action->missingParameter(), nullptr) << example.commandLine;
    }
  }
}

} // namespace
} // namespace tabwright::host
