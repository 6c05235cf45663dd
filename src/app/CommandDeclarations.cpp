// CLI11 reads the commands and their own options; what stands behind an action's name is left to the catalogue, which
// knows the parameters.
#include "app/CommandDeclarations.h"

#include "app/HelpFormatter.h"
#include "client/RunWords.h"

#include <CLI/CLI.hpp>
#include <fmt/core.h>

#include <memory>

namespace tabwright::app {
namespace {

// Named by the kind of word that it takes.
template <class Value>
CLI::Option* operand(CLI::App& command, const char* kind, Value& value, const char* description) {
  return command.add_option(kind, value, description)->type_name("");
}

// Makes one choice when it is given.
template <class Value>
CLI::Option* flag(CLI::App& command, const char* word, Value& value, Value chosen, const char* description) {
  return command.add_flag_callback(word, [&value, chosen] { value = chosen; }, description);
}

// The words behind an action's name are read later. “--help” there means the action, so the command has no flag of
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
    // CLI11 would have thrown this for the flag that was taken away.
    throw CLI::CallForHelp();
  throw CLI::RequiredError(operands::action);
}

void declareRun(CLI::App& program, Choices& choices) {
  CLI::App* run = program.add_subcommand("run", "Run an action of the catalogue");
  operand(*run, operands::action, choices.run.name, "The action: “tabwright actions” lists them");
  for (const client::RunWord& own : client::runWords::all) {
    const std::string word(own.word);
    const std::string meaning(own.meaning);
    // A flag and an option are put back among the words in the same form.
    if (own.value.empty())
      run->add_flag_callback(word, [&choices, word] { choices.run.words.push_back(word); }, meaning);
    else
      run->add_option_function<std::string>(
             word,
             [&choices, word](const std::string& value) {
               choices.run.words.insert(choices.run.words.end(), {word, value});
             },
             meaning)
          ->type_name(std::string(own.value));
  }
  run->footer(fmt::format(
      "Parameters follow the name: --name value. “tabwright actions ACTION” tells which there are.\n"
      "{0} runs the action for each item of the list that a parameter is given as, goes on where one fails, "
      "and ends with 1 then: tabwright run GetListOfTabs | tabwright run CloseTab --targetTab - {0}",
      client::runWords::each.word));
  takeTheRest(*run);
  // CLI11 calls this once the whole line is parsed. The words come together again as they were written, own words
  // first: `ParameterArguments.cpp` reads them, here as in the background host.
  run->callback([&choices, run] {
    const std::vector<std::string> rest = restOf(*run, choices.run.name);
    choices.run.words.insert(choices.run.words.end(), rest.begin(), rest.end());
    choices.chosen = [&choices] { return app::run(choices.run); };
  });

  CLI::App* script = program.add_subcommand("script", "Print the AppleScript program of a run, without running it");
  operand(*script, operands::action, choices.script.name, "The action");
  takeTheRest(*script);
  script->callback([&choices, script] {
    choices.script.parameters = restOf(*script, choices.script.name);
    choices.chosen = [&choices] { return app::script(choices.script); };
  });
}

void declareActions(CLI::App& program, Choices& choices) {
  CLI::App* actions = program.add_subcommand("actions", "List the actions, or show one in full");
  operand(*actions, operands::action, choices.actions.name, "The action to show");
  actions->add_flag("--json", choices.isJson, "Print names, titles and JSON schemas");
  actions->add_flag("--markdown", choices.actions.isReference, "Print the reference of all actions as Markdown");
  actions->callback([&choices] {
    choices.actions.output = choices.output();
    choices.chosen = [&choices] { return app::actions(choices.actions); };
  });
}

void declareAppleScript(CLI::App& program, Choices& choices) {
  CLI::App* script = program.add_subcommand("applescript", "Run an AppleScript and print its result in source form");
  operand(*script, operands::file, choices.appleScript.file, "The script; “-” reads standard input")->required();
  operand(*script, "ARGUMENT", choices.appleScript.arguments, "Passed to the script’s run handler as a list of texts");
  flag(*script, "--check", choices.appleScript.mode, AppleScriptCommand::Mode::check,
       "Only check the syntax; show every error with its place")
      ->excludes(flag(*script, "--format", choices.appleScript.mode, AppleScriptCommand::Mode::format,
                      "Only print the script, laid out in the usual way"));
  script->callback([&choices] { choices.chosen = [&choices] { return appleScript(choices.appleScript); }; });
}

void declareMarkdown(CLI::App& program, Choices& choices) {
  CLI::App* markdown = program.add_subcommand("markdown", "Convert HTML to Markdown, or to rich text");
  operand(*markdown, operands::file, choices.markdown.file, "The page; without it, or with “-”, standard input");
  CLI::Option* const richText = flag(*markdown, "--rtf", choices.markdown.form, MarkdownCommand::Form::richText,
                                     "Convert to Rich Text Format, for word processors");
  CLI::Option* const gitHub =
      flag(*markdown, "--gfm", choices.markdown.form, MarkdownCommand::Form::gitHubMarkdown,
           "Convert to GitHub Flavored Markdown that reads as the page does: code, tables and links kept, text escaped")
          ->excludes(richText);
  markdown->add_option("--base", choices.markdown.base, "With --gfm: the page’s address, to make its links absolute")
      ->type_name("URL")
      ->needs(gitHub);
  markdown->add_flag("--main", choices.markdown.isMainAlone, "With --gfm: the page’s main content alone")
      ->needs(gitHub);
  markdown->callback([&choices] { choices.chosen = [&choices] { return app::markdown(choices.markdown); }; });
}

void declareWorkflow(CLI::App& program, Choices& choices) {
  CLI::App* workflow = program.add_subcommand("workflow", "Run a list of steps from a file");
  operand(*workflow, operands::file, choices.workflow.file, "The steps, in YAML; “-” reads standard input")->required();
  workflow
      ->add_option("--set", choices.workflow.variables,
                   "Give a variable of the file another value; may stand more than once")
      ->type_name("NAME=VALUE")
      // One value behind each --set: an option of a list would take the operands behind it, too.
      ->expected(1)
      ->take_all();
  flag(*workflow, "--dry-run", choices.workflow.mode, WorkflowCommand::Mode::dryRun,
       "Check the file and tell what would run");
  workflow->callback([&choices] { choices.chosen = [&choices] { return app::workflow(choices.workflow); }; });
}

constexpr const char* knownBrowsers = "chromium, chrome, edge, brave or vivaldi";

void declareBrowser(CLI::App& program, Choices& choices) {
  CLI::App* browser =
      program.add_subcommand("browser", "Start a browser to drive, with a profile of its own and remote debugging on");
  operand(*browser, operands::browser, choices.browser.browser, knownBrowsers)->required();
  operand(*browser, "ADDRESS", choices.browser.address, "A page to open");
  browser->add_flag("--headless", choices.browser.isHeadless, "Without a window");
  browser->add_flag("--json", choices.isJson, "Print what was started as JSON");
  browser->footer(
      "Words behind “--” go to the browser as they are: its own switches, but for those that run a program.");
  browser->callback([&choices] {
    choices.browser.output = choices.output();
    choices.chosen = [&choices] { return app::browser(choices.browser); };
  });
}

void declareConnection(CLI::App& program, Choices& choices) {
  CLI::App* connect = program.add_subcommand(
      "connect", "Install Tabwright’s helper in your own browsers, and say what to click in them");
  operand(*connect, operands::browser, choices.connect.browser, knownBrowsers);
  CLI::Option* wait =
      connect->add_option("--wait", choices.connect.patience, "Wait so long for the helper, instead of 300 seconds")
          ->type_name("SECONDS")
          ->check(CLI::Range(1, 86400));
  flag(*connect, "--no-wait", choices.connect.isWaiting, false, "Only install, and say what is to be done")
      ->excludes(wait);
  connect->footer("It may be run again at any time. “tabwright disconnect” removes what it has installed.");
  connect->callback([&choices] { choices.chosen = [&choices] { return app::connect(choices.connect); }; });

  CLI::App* disconnect =
      program.add_subcommand("disconnect", "Remove Tabwright’s helper from your own browsers, without a trace");
  operand(*disconnect, operands::browser, choices.disconnect.browser, knownBrowsers);
  disconnect->callback([&choices] { choices.chosen = [&choices] { return app::disconnect(choices.disconnect); }; });

  CLI::App* browsers = program.add_subcommand(
      "browsers", "List your browsers and their profiles, how each can be reached, and what is to be done");
  browsers->add_flag("--json", choices.isJson, "Print what was found as JSON");
  browsers->callback([&choices] { choices.chosen = [&choices] { return app::browsers(choices.output()); }; });
}

void declareWindows(CLI::App& program, Choices& choices) {
  CLI::App* open =
      program.add_subcommand("open", "Show Tabwright’s windows: the setup, the documentation, what is new");
  open->callback([&choices] { choices.chosen = [] { return app::open(); }; });
}

void declareUpdate(CLI::App& program, Choices& choices) {
  CLI::App* update = program.add_subcommand("update", "Tell whether there is a newer Tabwright, and what to do");
  flag(*update, "--install", choices.update.mode, UpdateCommand::Mode::install,
       "Install it, where this copy was unpacked from an archive");
  update->add_flag("--json", choices.isJson, "Print what was found as JSON");
  update->callback([&choices] {
    choices.update.output = choices.output();
    choices.chosen = [&choices] { return app::update(choices.update); };
  });
}

void declareAgents(CLI::App& program, Choices& choices) {
  CLI::App* mcp = program.add_subcommand("mcp", "Serve the actions to an agent: Model Context Protocol on standard "
                                                "input and output");
  mcp->callback([&choices] { choices.chosen = [] { return app::mcp(); }; });
}

void declareShells(CLI::App& program, Choices& choices) {
  CLI::App* completion =
      program.add_subcommand("completion", "Print the script that completes tabwright’s words in a shell");
  operand(*completion, operands::shell, choices.shell, "bash, zsh or fish")->required();
  completion->callback([&choices] { choices.chosen = [&choices] { return app::completion(choices.shell); }; });

  CLI::App* manual = program.add_subcommand("manual", "Print the manual page, for “man -l -”");
  operand(*manual, operands::action, choices.manualAction, "The one action to tell of; without it, all");
  manual->callback([&choices, &program] {
    choices.chosen = [&choices, &program] { return app::manual(program, choices.manualAction); };
  });

  CLI::App* help = program.add_subcommand("help", "Show all commands, or one command or action in full");
  operand(*help, operands::word, choices.helpWord, "A command or an action");
  help->callback(
      [&choices, &program] { choices.chosen = [&choices, &program] { return app::help(program, choices.helpWord); }; });
}

} // namespace

void declareCommands(CLI::App& program, Choices& choices) {
  program.description("Drives a browser from outside: actions on its windows, tabs and pages, and AppleScript");
  program.name("tabwright");
  program.formatter(std::make_shared<HelpFormatter>());
  program.set_version_flag("--version", "tabwright " TABWRIGHT_VERSION);
  program.add_option("--log-level", choices.logLevel, "Show on standard error what happens: debug, info or error")
      ->type_name("LEVEL");
  // None is right as well: the overview.
  program.require_subcommand(0, 1);
  // Until a command is parsed.
  choices.chosen = [] { return overview(); };
  declareRun(program, choices);
  declareActions(program, choices);
  declareAppleScript(program, choices);
  declareWorkflow(program, choices);
  declareMarkdown(program, choices);
  declareBrowser(program, choices);
  declareConnection(program, choices);
  declareWindows(program, choices);
  declareUpdate(program, choices);
  declareAgents(program, choices);
  declareShells(program, choices);
}

} // namespace tabwright::app
