// The words that shells are told, and the candidates that the three shells make of them: each script is loaded by its
// shell.
#include "app/CommandDeclarations.h"
#include "app/Completion.h"
#include "app/Composition.h"
#include "support/CommandRun.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::app {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testsupport::CommandOutcome;

class CompletionOfWords : public ::testing::Test {
protected:
  CompletionOfWords() { declareCommands(program_, choices_); }

  std::vector<std::string> candidates(const std::vector<std::string>& words) {
    std::vector<std::string> result;
    for (const Candidate& candidate : completion(words).candidates)
      result.push_back(candidate.word);
    return result;
  }
  Completion completion(const std::vector<std::string>& words, const CandidateSource& things = {}) {
    return completionOf(program_, composition_.referenceCatalogue(), words, things);
  }

private:
  CLI::App program_;
  Choices choices_;
  Composition composition_;
};

TEST_F(CompletionOfWords, OffersCommandsThenActionsThenParameters) {
  EXPECT_THAT(candidates({"ac"}), ElementsAre("actions"));
  EXPECT_THAT(candidates({""}), Contains("run"));
  EXPECT_THAT(candidates({"--log-level", "info", "run", "ClickE"}), ElementsAre("ClickElement"));
  EXPECT_THAT(candidates({"script", "GetListOfT"}), ElementsAre("GetListOfTabs"));
  EXPECT_THAT(candidates({"run", "ClickElement", "--css"}), ElementsAre("--cssSelector"));
  EXPECT_THAT(candidates({"run", "clickelement", "--j"}), ElementsAre("--json"));
  EXPECT_THAT(candidates({"run", "GetDetailsOfTab", "--s"}), ElementsAre("--save-files"));
  EXPECT_THAT(candidates({"run", "ClickElement", "--s"}), IsEmpty());
}

TEST_F(CompletionOfWords, LeavesOutWhatWasGiven) {
  EXPECT_THAT(candidates({"run", "ClickElement", "--cssSelector", "a", "--tabSelection=frontTab", "--"}),
              Not(Contains("--cssSelector")));
  // A value that looks like a parameter is none.
  EXPECT_THAT(candidates({"run", "ClickElement", "--cssSelector", "--targetTab", "--targetT"}),
              ElementsAre("--targetTab"));
}

TEST_F(CompletionOfWords, OffersTheChoicesOfAValue) {
  EXPECT_THAT(candidates({"run", "ClickElement", "--tabSelection", ""}), ElementsAre("frontTab", "specificTab"));
  EXPECT_THAT(candidates({"run", "ClickElement", "--tabSelection=sp"}), ElementsAre("--tabSelection=specificTab"));
  EXPECT_THAT(candidates({"run", "ClickElement", "--targetContext", "ch"}), ElementsAre("chromium", "chrome"));
  EXPECT_THAT(candidates({"run", "ClickElement", "--cssSelector", ""}), IsEmpty());
  EXPECT_TRUE(completion({"run", "ClickElement", "--targetTab", "@x"}).takesFiles);
  EXPECT_FALSE(completion({"run", "ClickElement", "--targetTab", "x"}).takesFiles);
}

TEST_F(CompletionOfWords, OffersTheTabsThatThereAreWhereOneIsAskedFor) {
  int asked = 0;
  const CandidateSource things = [&](const intents::ValueType&) {
    ++asked;
    return std::vector<Candidate>{{"chromium:8", "News [Chromium]"}, {"brave:9", "Mail"}};
  };
  const auto offered = [&](const std::vector<std::string>& words) { return completion(words, things).candidates; };
  EXPECT_THAT(offered({"run", "FocusTab", "--targetTab", "ch"}),
              ElementsAre(Candidate{"chromium:8", "News [Chromium]"}));
  EXPECT_THAT(offered({"run", "FocusTab", "--targetTab=b"}), ElementsAre(Candidate{"--targetTab=brave:9", "Mail"}));
  EXPECT_EQ(asked, 2);
  static_cast<void>(offered({"run", "FocusTab", "--targetT"}));
  static_cast<void>(offered({"run", "FocusTab", "--targetContext", ""}));
  EXPECT_EQ(asked, 2);
}

TEST_F(CompletionOfWords, KnowsTheOperandsOfEachCommand) {
  EXPECT_THAT(candidates({"browser", "ch"}), ElementsAre("chromium", "chrome"));
  EXPECT_THAT(candidates({"browser", "chromium", "http"}), IsEmpty());
  EXPECT_THAT(candidates({"browser", "--h"}), ElementsAre("--help", "--headless"));
  EXPECT_THAT(candidates({"completion", ""}), ElementsAre("bash", "zsh", "fish"));
  EXPECT_TRUE(completion({"applescript", ""}).takesFiles);
  EXPECT_FALSE(completion({"actions", ""}).takesFiles);
  EXPECT_TRUE(completion({"run", "GetDetailsOfTab", "--save-files", ""}).takesFiles);
  EXPECT_TRUE(completion({"run", "GetDetailsOfTab", "--save-files=x"}).takesFiles);
  EXPECT_FALSE(completion({"workflow", "--set", ""}).takesFiles);
  EXPECT_TRUE(completion({"workflow", "--set", "a=b", ""}).takesFiles);
  EXPECT_TRUE(completion({"run", "--save-files", ""}).takesFiles);
  EXPECT_THAT(candidates({"run", "--save-files", "folder", "ClickE"}), ElementsAre("ClickElement"));
  EXPECT_THAT(candidates({"--log-level=d"}), ElementsAre("--log-level=debug"));
}

TEST_F(CompletionOfWords, OffersNothingForWordsWithoutSense) {
  EXPECT_THAT(candidates({"run", "NoSuchAction", "--"}), IsEmpty());
  EXPECT_THAT(candidates({"run", "ClickElement", "--nothing=", "--also="}), IsEmpty());
  EXPECT_THAT(candidates({}), Contains("run"));
}

// Runs a shell with the script of `tabwright completion` loaded and a `tabwright` that is the one under test.
CommandOutcome shell(const std::string& name, std::vector<std::string> options, const std::string& script) {
  options.push_back("-c");
  options.push_back(script);
  return testsupport::runProgram(name, options, {},
                                 {{"TABWRIGHT", testsupport::tabwrightPath()}, {"LC_ALL", "C.UTF-8"}});
}

TEST(CompletionScripts, BashCompletesNamesAndJoinsWordsThatItSplit) {
  const auto complete = [](const std::string& words, int index) {
    return shell("bash", {"--norc"},
                 "source <($TABWRIGHT completion bash); COMP_WORDS=($TABWRIGHT " + words +
                     "); COMP_CWORD=" + std::to_string(index) + "; _tabwright; printf '%s\\n' \"${COMPREPLY[@]}\"")
        .output;
  };
  EXPECT_EQ(complete("run ClickEl", 2), "ClickElement\n");
  EXPECT_EQ(complete("run ClickElement --tabSelection = sp", 5), "specificTab\n");
  EXPECT_EQ(complete("run ClickElement --tabSelection =", 4), "frontTab\nspecificTab\n");
  EXPECT_EQ(complete("run ClickElement --targetTab @/etc/hostn", 4), "@/etc/hostname\n");
  // References say nothing by themselves.
  const std::string listed =
      shell("bash", {"--norc"},
            "source <($TABWRIGHT completion bash); tabs() { printf 'chromium:8\\tNews\\nchromium:9\\tMail\\n'; };"
            "COMP_WORDS=(tabs run FocusTab --targetTab chromium : ''); COMP_CWORD=6; _tabwright;"
            "printf '%s\\n' \"${COMPREPLY[@]}\"")
          .output;
  EXPECT_EQ(listed, "8  (News)\n9  (Mail)\n");
}

TEST(CompletionScripts, ZshDescribesCandidates) {
  const CommandOutcome outcome =
      shell("zsh", {"-f"},
            "compdef() { }; _describe() { print -l -- \"${(@P)${@[-1]}}\" }; _files() { print files }; compset() { };"
            "source <($TABWRIGHT completion zsh); words=($TABWRIGHT run ClickElement --tabSelection ''); CURRENT=5;"
            "_tabwright; words=($TABWRIGHT applescript ''); CURRENT=3; _tabwright");
  EXPECT_EQ(outcome.output, "frontTab:front tab\nspecificTab:specific tab\nfiles\n") << outcome.errors;
}

TEST(CompletionScripts, FishCompletesNames) {
  const CommandOutcome outcome =
      shell("fish", {"--no-config"},
            "function tabwright; command $TABWRIGHT $argv; end; tabwright completion fish | source;"
            "complete -C 'tabwright run ClickEl'; complete -C 'tabwright run ClickElement --tabSelection sp'");
  EXPECT_THAT(outcome.output, HasSubstr("ClickElement\t")) << outcome.errors;
  EXPECT_THAT(outcome.output, HasSubstr("specificTab\tspecific tab\n"));
}

TEST(Manual, IsAPageWithoutMistakesInItsMarkup) {
  const CommandOutcome page = testsupport::runTabwright({"manual"}, {}, {{"LC_ALL", "C.UTF-8"}});
  ASSERT_EQ(page.exitCode, 0) << page.errors;
  EXPECT_EQ(page.output.find('@' + std::string("COMMANDS")), std::string::npos);
  const CommandOutcome set =
      testsupport::runProgram("groff", {"-man", "-Kutf8", "-Tutf8", "-P-cbou", "-ww", "-rLL=100n"}, page.output, {});
  EXPECT_EQ(set.errors, "");
  for (const char* text : {"--cssSelector", "ClickElement", "--headless", "tabwright browser chromium"})
    EXPECT_NE(set.output.find(text), std::string::npos) << text;
}

} // namespace
} // namespace tabwright::app
