// The program itself as a user sees it, without any browser: each test runs the executable.
#include "platform/TerminalCells.h"
#include "support/CommandRun.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <utility>

namespace tabwright {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
using testsupport::CommandOutcome;
using testsupport::runTabwright;

class CommandLine : public ::testing::Test {
protected:
  CommandOutcome tabwright(const std::vector<std::string>& arguments, const std::string& input = {},
                           std::map<std::string, std::string> environment = {}) {
    environment.merge(std::map<std::string, std::string>{{"HOME", home.path()},
                                                         {"XDG_RUNTIME_DIR", ""},
                                                         {"XDG_DATA_HOME", ""},
                                                         {"XDG_STATE_HOME", ""},
                                                         {"XDG_CONFIG_HOME", ""},
                                                         {"DISPLAY", ""},
                                                         {"WAYLAND_DISPLAY", ""},
                                                         {"LC_ALL", "C.UTF-8"}});
    return runTabwright(arguments, input, environment);
  }

  testsupport::ScratchFolder home;
};

TEST_F(CommandLine, runsAScriptFromStandardInputAndPrintsItsResultInSourceForm) {
  const CommandOutcome outcome =
      tabwright({"applescript", "-", "one", "zwei"}, "on run argv\nreturn {1 + 2, argv, {x:missing value}}\nend run");
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.output, "{3, {\"one\", \"zwei\"}, {x:missing value}}\n");
}

TEST_F(CommandLine, showsARunTimeErrorWithItsPlace) {
  const CommandOutcome outcome = tabwright({"applescript", "-"}, "set x to 1\nset y to item 9 of {x}");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, StartsWith("standard input:2:10: execution error: Can’t get item 9 of {1}. (-1728)\n"
                                         "set y to item 9 of {x}\n"
                                         "         ^"));
}

TEST_F(CommandLine, showsWhatIsMissingAtTheEndBehindTheLastWords) {
  EXPECT_THAT(
      tabwright({"applescript", "--check", "-"}, "repeat\n\tbeep\n\n").errors,
      testing::AllOf(
          StartsWith("standard input:2:6: syntax error: Expected “end” or “end repeat” but found end of script."),
          HasSubstr("\n\tbeep\n\t    ^\n")));
}

TEST_F(CommandLine, refusesWithTheReasonOnStandardError) {
  struct Row {
    std::vector<std::string> words;
    int exitCode;
    std::string reason;
  };
  for (const Row& row : std::initializer_list<Row>{
           {{"applescript", "/nowhere/a.applescript"},
            2,
            "Can’t open /nowhere/a.applescript: No such file or directory."},
           {{"applescript", "/dev/zero"}, 2, "Can’t read /dev/zero: it is longer than 64 MiB, the most that is taken."},
           {{"run", "ClikElement"}, 2, "There is no action “ClikElement”. Did you mean ClickElement?"},
           {{"run", "ClickElement", "--cssSelektor", "a"}, 2, "Did you mean cssSelector?"},
           {{"run", "ClickElement", "--targetContext", "chromium"}, 2, "cssSelector needs a value. Which"},
           {{"run", "--targetContext", "chromium", "GetListOfTabs"},
            2,
            "tabwright run GetListOfTabs --targetContext …"},
           {{"list"}, 2, "There is no command “list”. Did you mean actions?"},
           {{"--json", "run", "GetListOfTabs"}, 2, "“--json” stands behind its command: tabwright run --json …"},
           {{"--log-levle", "info", "actions"}, 2, "There is no option “--log-levle”. Did you mean --log-level?"},
           {{"browser", "chromium", "--headles"}, 2, "has no option “--headles”. Did you mean --headless?"},
           {{"workflow"}, 2, "FILE is required. “tabwright help workflow” shows how it is used."},
           {{"actions", "a", "b", "c"}, 2, "“tabwright help actions” shows how it is used."},
           {{"run", "GetListOfWindows", "--each"}, 2, "give one for a parameter of GetListOfWindows.\n"},
           {{"--log-level", "info", "clickelement"}, 2, "“clickelement” is an action: tabwright run ClickElement"},
           {{"help", "ClikElement"}, 2, "Did you mean ClickElement?"},
           {{"manual", "ClikElement"}, 2, "Did you mean ClickElement?"},
           {{"run", "SetFormFields", "--targetContext", "chromium", "--inputDict", "{x"}, 2, "JSON document inputDict"},
           {{"run", "OpenInTab", "--newURL", "[x", "--each"}, 2, "newURL begins as one, but is no JSON"},
           {{"run", "CloseTab", "--targetTab", "[]"}, 2, "the list given for it is empty"},
           {{"run", "CloseTab", "--targetTab", "[1, 2]"}, 2, "With --each behind it, CloseTab runs for each of them."},
           {{"run", "CloseTab", "--targetTab", "{}\n{}\n"}, 2, "a list of 2 was given. With --each"},
           {{"run", "CloseTab", "--targetTab", "{} {}", "--each"}, 1, "CloseTab failed for 2 of 2 items."},
           {{"run", "CloseTab", "--targetTab", "-"}, 2, "Nothing came on standard input for targetTab"},
           {{"run", "CloseTab", "--targetTab", "vivaldi:8", "--each"}, 2, "--each needs a list"},
           {{"browser", "chromium", "--headless", " -x"}, 2, "“ -x” is no address"},
           {{"browser", "chromium", "--headless", "--", " -gpu-launcher=x"},
            2,
            "--gpu-launcher makes the browser run a program"},
           {{"browser", "chromium", "--headless", "--", "--gpu-x"}, 3, "Chromium isn’t installed"},
           {{"browser", "chromium"}, 3, "tabwright browser chromium --headless"},
           {{"update", "--install"}, 1, "This build doesn’t look for updates."},
           {{"update", "--instal"}, 2, "has no option “--instal”. Did you mean --install?"},
           {{"run", "GetListOfTabs", "--targetContext", "vivaldi", "--json"}, 3, "\"case\":\"browserNotFound\""},
       }) {
    const CommandOutcome outcome = tabwright(row.words, {}, {{"PATH", "/nowhere"}});
    EXPECT_EQ(outcome.exitCode, row.exitCode) << row.words.back();
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, HasSubstr(row.reason));
  }
}

TEST_F(CommandLine, saysWhenItsOutputCannotBeWritten) {
  const std::string steps = "steps:\n  - try:\n      - print: x\n  - print: y\n";
  const auto redirected = [&](const std::string& redirection, std::vector<std::string> words,
                              const std::string& input) {
    words.insert(words.begin(), {"-c", "\"$@\" " + redirection, "bash", testsupport::tabwrightPath()});
    return testsupport::runProgram("bash", words, input, {{"HOME", home.path()}, {"LC_ALL", "C.UTF-8"}});
  };
  const std::vector<std::pair<std::vector<std::string>, std::string>> commands{
      {{"actions"}, ""},
      {{"script", "GetListOfTabs", "--targetContext", "chromium"}, ""},
      {{"run", "ClickElement", "--help"}, ""},
      {{"applescript", "-"}, "1"},
      {{"markdown"}, "<p>x"},
      {{"workflow", "-"}, steps},
      {{"completion", "bash"}, ""},
      {{"manual"}, ""},
      {{"update"}, ""},
      {{"browsers"}, ""},
      {{"--help"}, ""},
      {{"mcp"},
       R"({"jsonrpc": "2.0", "id": 1, "method": "ping"})"
       "\n"},
  };
  for (const auto& [words, input] : commands) {
    const CommandOutcome full = redirected(">/dev/full", words, input);
    EXPECT_EQ(full.exitCode, 1) << words.front();
    EXPECT_EQ(full.errors, "tabwright: Standard output can’t be written: No space left on device.\n");
    const CommandOutcome closed = redirected(">&-", words, input);
    EXPECT_EQ(closed.exitCode, 1) << words.front();
    EXPECT_EQ(closed.errors, "tabwright: Standard output can’t be written: Bad file descriptor.\n");
  }
  const CommandOutcome left = testsupport::runProgram(
      "bash", {"-c", "exec 3> >(:); wait $!; \"$@\" >&3", "bash", testsupport::tabwrightPath(), "actions"}, "", {});
  EXPECT_EQ(left.exitCode, 128 + SIGPIPE);
  EXPECT_EQ(left.errors, "");
}

TEST_F(CommandLine, connectsBrowsersAndLeavesNoTraceOfIt) {
  const std::filesystem::path programs = home / "bin";
  const std::map<std::string, std::string> nothingInstalled{{"PATH", programs}, {"XDG_DATA_DIRS", "/nonexistent"}};
  EXPECT_EQ(tabwright({"connect", "vivaldi"}, "", nothingInstalled).exitCode, 3);
  EXPECT_THAT(tabwright({"connect", "vivaldi"}, "", nothingInstalled).errors, HasSubstr("Vivaldi is not installed"));
  EXPECT_EQ(tabwright({"connect", "netscape"}).exitCode, 2);
  EXPECT_EQ(tabwright({"connect", "--wait", "0"}).exitCode, 2);
  EXPECT_EQ(tabwright({"connect", "--wait", "9", "--no-wait"}).exitCode, 2);

  testsupport::ScratchFolder::write(programs / "vivaldi", "#!/bin/sh\n");
  std::filesystem::permissions(programs / "vivaldi", std::filesystem::perms::owner_all);
  const CommandOutcome connected = tabwright({"connect", "Vivaldi", "--no-wait"}, "", nothingInstalled);
  EXPECT_EQ(connected.exitCode, 0) << connected.errors;
  EXPECT_THAT(connected.output,
              ::testing::AllOf(HasSubstr("Vivaldi: the helper is installed in " + (home / ".config/vivaldi").string()),
                               HasSubstr("\nStart Vivaldi: ")));
  EXPECT_THAT(tabwright({"browsers"}, "", nothingInstalled).output, HasSubstr(R"("helperFiles":"present")"));
  // The browser may be gone by then.
  std::filesystem::remove(programs / "vivaldi");
  EXPECT_THAT(tabwright({"disconnect", "vivaldi"}, "", nothingInstalled).output, StartsWith("Vivaldi: removed "));
  EXPECT_FALSE(std::filesystem::exists(home / ".config"));
  EXPECT_THAT(tabwright({"disconnect", "vivaldi"}, "", nothingInstalled).output,
              HasSubstr("nothing of Tabwright’s to remove"));
}

TEST_F(CommandLine, convertsAPageForPipes) {
  const CommandOutcome whole =
      tabwright({"markdown", "--gfm", "--base", "https://a.test/b/", "--main"}, "<nav>n</nav><p><a href=c>d*</a> e*");
  EXPECT_EQ(whole.output, "n\n\n[d\\*](https://a.test/b/c) e\\*\n");
  EXPECT_EQ(whole.errors, "The page’s main content can’t be told from the rest of it: this is the whole page.\n");
  const CommandOutcome main = tabwright({"markdown", "--gfm", "--main"}, "<nav>n</nav><main>" + std::string(200, 'm'));
  EXPECT_EQ(main.output, std::string(200, 'm') + "\n");
  EXPECT_EQ(main.errors, "");
  for (const char* wrong : {"--base=x", "--main", "--rtf"})
    EXPECT_EQ(tabwright({"markdown", wrong, std::string_view(wrong) == "--rtf" ? "--gfm" : "-"}).exitCode, 2) << wrong;
}

TEST_F(CommandLine, tellsANewcomerWhereToBegin) {
  const CommandOutcome outcome = tabwright({});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.output, HasSubstr("tabwright browser chromium"));
  EXPECT_THAT(outcome.output, ::testing::ContainsRegex("No browser is running|is running"));
  EXPECT_EQ(tabwright({"help"}).output, tabwright({"--help"}).output);
}

TEST_F(CommandLine, showsHelpThatFitsATerminalAndCanBeCopied) {
  for (const std::string command :
       {"", "run", "script", "actions", "applescript", "workflow", "markdown", "browser", "connect", "disconnect",
        "browsers", "update", "mcp", "completion", "manual", "help"}) {
    const std::string help = tabwright({"help", command}).output;
    EXPECT_THAT(help, HasSubstr("\nUsage: tabwright " + command));
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);)
      EXPECT_LE(platform::cellsOf(line), 80u) << line;
  }
}

TEST_F(CommandLine, checksAndFormatsWithoutRunning) {
  const CommandOutcome good = tabwright({"applescript", "--check", "-"}, "error \"this is not run\"");
  EXPECT_EQ(good.exitCode, 0) << good.errors;
  EXPECT_EQ(good.output + good.errors, "");

  const CommandOutcome bad = tabwright({"applescript", "--check", "-"}, "set x to\nset y to 2\nif y then then\n");
  EXPECT_EQ(bad.exitCode, 1);
  EXPECT_THAT(bad.errors, HasSubstr("standard input:1:"));
  EXPECT_THAT(bad.errors, HasSubstr("standard input:3:"));
  EXPECT_THAT(bad.errors, HasSubstr("^"));

  const CommandOutcome formatted = tabwright({"applescript", "--format", "-"}, "if 1 = x then -- so\n  beep\nend");
  EXPECT_EQ(formatted.output + formatted.errors, "if 1 = x then -- so\n\tbeep\nend if\n");

  const CommandOutcome noText = tabwright({"applescript", "-"}, "set x to 1\nset y to \"a\xff\"\n");
  EXPECT_EQ(noText.exitCode, 1);
  EXPECT_THAT(noText.errors, StartsWith("standard input:2:12: syntax error: A script is text in UTF-8"));
}

TEST_F(CommandLine, keepsWhatPagesSayFromSteeringTheTerminal) {
  const std::string hostile = "a\x1b[31mb\xC2\x9B"
                              "c\xE2\x80\xAE"
                              "d";
  std::ofstream(home / "page.html") << "<p>" << hostile;
  std::ofstream(home / "steps.yaml") << "steps:\n  - print: \"a\\e[31mb\\x9bc\\u202ed\"\n";
  std::ofstream(home / "script")
      << "error \"a\" & character id 27 & \"b\" & character id 155 & character id 8238 & \"c\"";
  const auto terminal = [&](const char* command, const char* file) {
    return testsupport::runAtTerminal(testsupport::tabwrightPath(), {command, (home / file).string()},
                                      {{"HOME", home.path()}, {"LC_ALL", "C.UTF-8"}});
  };
  EXPECT_THAT(terminal("markdown", "page.html"), StartsWith("a[31mbcd"));
  EXPECT_EQ(terminal("workflow", "steps.yaml"), "a[31mbcd\n");
  EXPECT_THAT(terminal("applescript", "script"), HasSubstr("execution error: abc (-2700)"));
  EXPECT_EQ(tabwright({"workflow", (home / "steps.yaml").string()}).output, "a\x1b[31mb\xC2\x9B"
                                                                            "c\xE2\x80\xAE"
                                                                            "d\n");
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
