// What a user sees of the program itself, without any browser: each test runs the executable.
#include "support/CommandRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace tabwright {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
using testsupport::CommandOutcome;
using testsupport::runTabwright;

class CommandLine : public ::testing::Test {
protected:
  CommandLine() : home_(std::filesystem::temp_directory_path() / ("tabwright-home-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(home_);
  }
  ~CommandLine() override { std::filesystem::remove_all(home_); }

  CommandOutcome tabwright(const std::vector<std::string>& arguments, const std::string& input = {},
                           std::map<std::string, std::string> environment = {}) {
    environment.merge(std::map<std::string, std::string>{{"HOME", home_.string()},
                                                         {"XDG_DATA_HOME", ""},
                                                         {"XDG_STATE_HOME", ""},
                                                         {"XDG_CONFIG_HOME", ""},
                                                         {"DISPLAY", ""},
                                                         {"WAYLAND_DISPLAY", ""},
                                                         {"LC_ALL", "C.UTF-8"}});
    return runTabwright(arguments, input, environment);
  }

  const std::filesystem::path& home() const { return home_; }

private:
  std::filesystem::path home_;
};

TEST_F(CommandLine, runsAScriptFromStandardInputAndPrintsItsResultInSourceForm) {
  const CommandOutcome outcome = tabwright({"applescript", "-"}, "{1 + 2, \"a\" & \"b\", {x:missing value}}");
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.output, "{3, \"ab\", {x:missing value}}\n");
}

TEST_F(CommandLine, passesArgumentsToTheRunHandler) {
  const CommandOutcome outcome =
      tabwright({"applescript", "-", "one", "zwei"}, "on run argv\nreturn (count argv) & argv\nend run");
  EXPECT_EQ(outcome.output, "{2, \"one\", \"zwei\"}\n") << outcome.errors;
}

TEST_F(CommandLine, showsARunTimeErrorWithItsPlace) {
  const CommandOutcome outcome = tabwright({"applescript", "-"}, "set x to 1\nset y to item 9 of {x}");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, StartsWith("standard input:2:10: execution error: Can’t get item 9 of {1}. (-1728)\n"
                                         "set y to item 9 of {x}\n"
                                         "         ^"));
}

TEST_F(CommandLine, checksSyntaxWithoutRunning) {
  const CommandOutcome good = tabwright({"applescript", "--check", "-"}, "error \"this is not run\"");
  EXPECT_EQ(good.exitCode, 0) << good.errors;
  EXPECT_EQ(good.output + good.errors, "");

  const CommandOutcome bad = tabwright({"applescript", "--check", "-"}, "set x to\nset y to 2\nif y then then\n");
  EXPECT_EQ(bad.exitCode, 1);
  EXPECT_THAT(bad.errors, HasSubstr("standard input:1:"));
  EXPECT_THAT(bad.errors, HasSubstr("standard input:3:"));
  EXPECT_THAT(bad.errors, HasSubstr("^"));
}

TEST_F(CommandLine, saysWhichFileCannotBeRead) {
  const CommandOutcome outcome = tabwright({"applescript", "/nowhere/a.applescript"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.errors, "tabwright: Can’t open /nowhere/a.applescript: No such file or directory.\n");
  EXPECT_EQ(tabwright({"applescript", "/dev/zero"}).errors,
            "tabwright: Can’t read /dev/zero: it is longer than 64 MiB, the most that is taken.\n");
}

TEST_F(CommandLine, offersTheNearestNamesForAMiss) {
  const CommandOutcome action = tabwright({"run", "ClikElement"});
  EXPECT_EQ(action.exitCode, 2);
  EXPECT_THAT(action.errors, HasSubstr("Did you mean ClickElement?"));

  const CommandOutcome parameter = tabwright({"run", "ClickElement", "--cssSelektor", "a"});
  EXPECT_EQ(parameter.exitCode, 2);
  EXPECT_THAT(parameter.errors, HasSubstr("Did you mean cssSelector?"));
}

TEST_F(CommandLine, namesAMissingParameterAndItsQuestionWhereNobodyCanBeAsked) {
  const CommandOutcome outcome = tabwright({"run", "ClickElement", "--targetContext", "chromium"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.errors, StartsWith("tabwright: cssSelector needs a value. "));
  EXPECT_GT(outcome.errors.size(), std::string("tabwright: cssSelector needs a value. \n").size());
}

TEST_F(CommandLine, refusesWordsThatBelongToNoParameter) {
  const CommandOutcome outcome = tabwright({"script", "ClickElement", "button"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.errors, HasSubstr("“button” belongs to no parameter"));
}

TEST_F(CommandLine, printsAProgramByteForByteForEitherFamily) {
  const CommandOutcome chromium = tabwright({"script", "GetListOfTabs", "--targetContext", "chromium"});
  EXPECT_EQ(chromium.exitCode, 0) << chromium.errors;
  EXPECT_THAT(chromium.output, StartsWith("use AppleScript version \"2.4\"\n"));
  EXPECT_THAT(chromium.output, HasSubstr("\ntell application id \"org.chromium.chromium\"\nreturn my success(my "
                                         "getListOfTabs())\nend tell\nreturn my failure(0)\nend\n"));
  EXPECT_NE(chromium.output.back(), '\n');

  const CommandOutcome safari = tabwright({"script", "GetListOfTabs", "--targetContext=com.apple.Safari"});
  EXPECT_THAT(safari.output, HasSubstr("tell application id \"com.apple.safari\""));
  EXPECT_THAT(safari.output, HasSubstr("on __isPrivateWindow(nativeWindow)"));
}

TEST_F(CommandLine, aPrintedProgramPassesItsOwnSyntaxCheck) {
  for (const char* target : {"chromium", "safari"}) {
    const CommandOutcome program =
        tabwright({"script", "ClickElement", "--targetContext", target, "--cssSelector", "a[title=\"x\\\\y\"]"});
    ASSERT_EQ(program.exitCode, 0) << program.errors;
    const CommandOutcome check = tabwright({"applescript", "--check", "-"}, program.output);
    EXPECT_EQ(check.exitCode, 0) << check.errors;
  }
}

TEST_F(CommandLine, reportsAMissingBrowserWithItsOwnExitCode) {
  const CommandOutcome absent =
      tabwright({"run", "GetListOfTabs", "--targetContext", "vivaldi", "--json"}, {}, {{"PATH", "/nowhere"}});
  EXPECT_EQ(absent.exitCode, 3) << absent.errors;
  EXPECT_THAT(absent.errors, HasSubstr("\"case\":\"browserNotFound\""));
  EXPECT_EQ(absent.output, "");

  const CommandOutcome start = tabwright({"browser", "chromium", "--headless"}, {}, {{"PATH", "/nowhere"}});
  EXPECT_EQ(start.exitCode, 3);
  EXPECT_EQ(start.errors, "tabwright: Chromium isn’t installed: none of its programs is on the PATH.\n");

  const CommandOutcome noDesktop = tabwright({"browser", "chromium"});
  EXPECT_EQ(noDesktop.exitCode, 3);
  EXPECT_THAT(noDesktop.errors, HasSubstr("tabwright browser chromium --headless"));
}

TEST_F(CommandLine, leavesNoScriptBehindWhateverHappened) {
  static_cast<void>(tabwright({"run", "GetListOfTabs", "--targetContext", "vivaldi"}, {}, {{"PATH", "/nowhere"}}));
  const std::filesystem::path scripts = home() / ".local/share/tabwright/scripts/Temp";
  ASSERT_TRUE(std::filesystem::is_directory(scripts));
  EXPECT_TRUE(std::filesystem::is_empty(scripts));
}

TEST_F(CommandLine, listsAndDescribesActionsFromTheCatalogue) {
  const CommandOutcome list = tabwright({"actions"});
  EXPECT_EQ(list.exitCode, 0);
  EXPECT_THAT(list.output, HasSubstr("ClickElement"));
  EXPECT_THAT(list.output, HasSubstr("GetListOfTabs"));

  const CommandOutcome one = tabwright({"actions", "clickelement"});
  EXPECT_THAT(one.output, HasSubstr("cssSelector"));
  EXPECT_THAT(one.output, HasSubstr("tabwright run ClickElement"));
  EXPECT_EQ(tabwright({"run", "ClickElement", "--help"}).output, one.output);

  const CommandOutcome schemas = tabwright({"actions", "ClickElement", "--json"});
  EXPECT_THAT(schemas.output, HasSubstr("\"inputSchema\":{"));
}

TEST_F(CommandLine, runsAWorkflowAndPrintsWhatItsStepsPrint) {
  const std::string steps = "variables: {who: you}\nsteps:\n  - repeat: [1, 2]\n    as: n\n    steps:\n"
                            "      - print: ${n} ${who}\n";
  CommandOutcome outcome = tabwright({"workflow", "-", "--set", "who=me"}, steps);
  EXPECT_EQ(outcome.output, "1 me\n2 me\n") << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  outcome = tabwright({"workflow", "--dry-run", "-"}, steps);
  EXPECT_EQ(outcome.output, "   3  repeat for each n in [1, 2]\n   6    print ${n} you\n") << outcome.errors;
  outcome = tabwright({"workflow", "-", "--set", "how=me"}, steps);
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.errors, StartsWith("tabwright: The workflow has no variable “how”. Did you mean who?"));
}

TEST_F(CommandLine, showsMistakesAndFailuresOfAWorkflowWithTheirPlaces) {
  CommandOutcome outcome =
      tabwright({"workflow", "-"}, "steps:\n  - print: ${ä}\n  - action: ClickElement\n    as: x\n");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.errors, StartsWith("standard input:2:12: ${ä} is no path"));
  EXPECT_THAT(outcome.errors, HasSubstr("\n  - print: ${ä}\n           ^^^^\n"));

  outcome =
      tabwright({"workflow", "-"}, "steps:\n  - action: GetListOfTabs\n    parameters: {targetContext: vivaldi}\n");
  EXPECT_EQ(outcome.exitCode, 3) << outcome.errors;
  EXPECT_THAT(outcome.errors, StartsWith("standard input:2:5: GetListOfTabs failed: "));
  EXPECT_EQ(tabwright({"workflow", "/nowhere.yaml"}).exitCode, 2);
}

} // namespace
} // namespace tabwright
