#include "app/CommandLine.h"

#include "app/FailureReport.h"
#include "app/Interruptible.h"
#include "app/commands/Commands.h"
#include "platform/LogSinks.h"
#include "platform/Logger.h"
#include "platform/linux/RunningBrowsers.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <csignal>
#include <exception>
#include <functional>
#include <iostream>
#include <span>
#include <string_view>

// CLI11 reads the commands and their own options; what stands behind an action's name is left to the catalogue, which
// knows the parameters.

namespace tabwright::app {
namespace {

struct Choices {
  std::string logLevel;
  bool isJson = false;

  RunCommand run;
  ScriptCommand script;
  ActionsCommand actions;
  std::string actionName;
  AppleScriptCommand appleScript;
  bool checks = false;
  BrowserCommand browser;
  std::string address;

  std::function<ExitCode()> chosen;

  [[nodiscard]] OutputForm output() const { return isJson ? OutputForm::json : OutputForm::automatic; }
};

// What stands behind an action's name is read later. “--help” there means the action, so the command has no flag of
// that name, and takes it for its own only when no action is named.
void takeTheRest(CLI::App& command) {
  command.set_help_flag();
  command.prefix_command();
}

std::vector<std::string> restOf(const CLI::App& command, const std::string& action) {
  std::vector<std::string> rest = command.remaining();
  if (!action.empty())
    return rest;
  if (rest == std::vector<std::string>{"--help"} || rest == std::vector<std::string>{"-h"})
    throw CLI::CallForHelp();
  throw CLI::RequiredError("NAME");
}

void declareRun(CLI::App& program, Choices& choices) {
  CLI::App* run = program.add_subcommand("run", "Run an action of the catalogue");
  run->add_option("NAME", choices.run.name, "The action: “tabwright actions” lists them");
  run->add_flag("--json", choices.isJson, "Print the result, or the error, as JSON");
  run->footer("Parameters follow the name: --name value. “tabwright actions NAME” tells which there are.");
  takeTheRest(*run);
  run->callback([&choices, run] {
    choices.run.parameters = restOf(*run, choices.run.name);
    choices.run.output = choices.output();
    choices.chosen = [&choices] { return app::run(choices.run); };
  });

  CLI::App* script = program.add_subcommand("script", "Print the AppleScript program of a run, without running it");
  script->add_option("NAME", choices.script.name, "The action");
  takeTheRest(*script);
  script->callback([&choices, script] {
    choices.script.parameters = restOf(*script, choices.script.name);
    choices.chosen = [&choices] { return app::script(choices.script); };
  });
}

void declareActions(CLI::App& program, Choices& choices) {
  CLI::App* actions = program.add_subcommand("actions", "List the actions, or show one in full");
  actions->add_option("NAME", choices.actionName, "The action to show");
  actions->add_flag("--json", choices.isJson, "Print names, titles and JSON schemas");
  actions->callback([&choices] {
    if (!choices.actionName.empty())
      choices.actions.name = choices.actionName;
    choices.actions.output = choices.output();
    choices.chosen = [&choices] { return app::actions(choices.actions); };
  });
}

void declareAppleScript(CLI::App& program, Choices& choices) {
  CLI::App* script = program.add_subcommand("applescript", "Run an AppleScript and print its result in source form");
  script->add_option("FILE", choices.appleScript.file, "The script; “-” reads standard input")->required();
  script->add_option("ARGUMENT", choices.appleScript.arguments,
                     "Passed to the script’s run handler as a list of texts");
  script->add_flag("--check", choices.checks, "Only check the syntax; show every error with its place");
  script->callback([&choices] {
    if (choices.checks)
      choices.appleScript.mode = AppleScriptCommand::Mode::check;
    choices.chosen = [&choices] { return appleScript(choices.appleScript); };
  });
}

void declareBrowser(CLI::App& program, Choices& choices) {
  CLI::App* browser =
      program.add_subcommand("browser", "Start a browser to drive, with a profile of its own and remote debugging on");
  browser->add_option("NAME", choices.browser.browser, "chromium, chrome, edge, brave or vivaldi")->required();
  browser->add_option("ADDRESS", choices.address, "A page to open");
  browser->add_flag("--headless", choices.browser.isHeadless, "Without a window");
  browser->add_flag("--json", choices.isJson, "Print what was started as JSON");
  browser->footer("Words behind “--” go to the browser as they are.");
  browser->callback([&choices] {
    if (!choices.address.empty())
      choices.browser.address = choices.address;
    choices.browser.output = choices.output();
    choices.chosen = [&choices] { return app::browser(choices.browser); };
  });
}

bool installLog(const std::string& levelName) {
  platform::LogSinks sinks{.file = platform::defaultLogFile(), .fileLevel = platform::LogLevel::info};
  if (!levelName.empty()) {
    sinks.standardErrorLevel = platform::logLevelNamed(levelName);
    if (!sinks.standardErrorLevel) {
      std::cerr << "There is no log level “" << levelName << "”: choose debug, info or error.\n";
      return false;
    }
  }
  platform::installLogSinks(sinks);
  return true;
}

// A browser that can't be found may be one that doesn't run, which that failure's own words don't tell.
std::string_view hintFor(const platform::Failure& failure) {
  if (failure.identity().caseName != "browserNotFound")
    return "";
  for (const platform::BrowserFacts& facts : platform::browserTable) {
    if (!platform::RunningBrowsers().find(facts).empty())
      return "";
  }
  return "No supported browser is running now. “tabwright browser chromium” starts one.\n";
}

ExitCode perform(const Choices& choices) {
  // Which form an action's error takes may stand behind its name.
  const bool isJson = choices.isJson || std::ranges::count(choices.run.parameters, "--json") > 0;
  try {
    if (!installLog(choices.logLevel))
      return ExitCode::wrongUse;
    return choices.chosen();
  } catch (const Interrupted&) {
    return ExitCode::interrupted;
  } catch (const platform::Failure& failure) {
    const FailureReport report = reportOf(failure, isJson ? ReportForm::json : ReportForm::sentence);
    std::cerr << (isJson ? "" : "tabwright: ") << report.text;
    if (!isJson)
      std::cerr << hintFor(failure);
    return report.exitCode;
  } catch (const std::exception& error) {
    std::cerr << "tabwright: " << error.what() << '\n';
    return ExitCode::failed;
  }
}

} // namespace

int runCommandLine(int argumentCount, char** arguments) {
  std::signal(SIGPIPE, SIG_IGN);

  // Words behind “--” are the browser's; CLI11 would take them for its own.
  const std::span<char*> all(arguments, static_cast<std::size_t>(argumentCount));
  const auto separator = std::ranges::find(all, std::string_view("--"));
  Choices choices;
  const bool isBrowserCommand = std::find(all.begin(), separator, std::string_view("browser")) != separator;
  auto end = all.end();
  if (isBrowserCommand && separator != all.end()) {
    choices.browser.switches.assign(separator + 1, all.end());
    end = separator;
  }

  CLI::App program{"Drives a browser from outside: actions on its windows, tabs and pages, and AppleScript"};
  program.name("tabwright");
  program.set_version_flag("--version", "tabwright " TABWRIGHT_VERSION);
  program.add_option("--log-level", choices.logLevel, "Show on standard error what happens: debug, info or error");
  program.require_subcommand(1);
  declareRun(program, choices);
  declareActions(program, choices);
  declareAppleScript(program, choices);
  declareBrowser(program, choices);
  try {
    program.parse(static_cast<int>(end - all.begin()), arguments);
  } catch (const CLI::ParseError& error) {
    const int code = program.exit(error, std::cout, std::cerr);
    return code == 0 ? 0 : static_cast<int>(ExitCode::wrongUse);
  }
  return static_cast<int>(perform(choices));
}

} // namespace tabwright::app
