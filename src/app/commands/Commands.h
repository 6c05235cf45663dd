#pragma once

#include "app/ExitCode.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

/// The commands of `tabwright`, one file each. All throw `platform::Failure` for the command line to report, and
/// `Interrupted` when a signal ended them.
namespace tabwright::app {

/// The reader for whom a result is written: a person or a program. Nothing given: for a person on a terminal.
enum class OutputForm { automatic, json };

/// The words behind `tabwright run`, which the action's declaration reads later (`runAction`).
struct RunCommand {
  std::string name;
  std::vector<std::string> words; ///< its parameters and the command's own words, as they were written
};
/// `tabwright run`: performs an action and prints its result. Asks for a missing value when standard input is a
/// terminal.
ExitCode run(RunCommand command);

/// The words behind `tabwright script`, read likewise. Words that belong to a run alone, such as --each, are wrong use.
struct ScriptCommand {
  std::string name;
  std::vector<std::string> parameters;
};
/// `tabwright script`: prints the program that the same run would write to its script file, and nothing else.
ExitCode script(const ScriptCommand& command);

struct ActionsCommand {
  /// None: all actions.
  std::optional<std::string> name;
  bool isReference = false; ///< the Markdown document of all actions instead
  OutputForm output = OutputForm::automatic;
};
/// `tabwright actions`: the catalogue, or one action. As JSON: name, title and both schemas, of all actions in a list
/// or of the one.
ExitCode actions(const ActionsCommand& command);

struct AppleScriptCommand {
  enum class Mode { run, check, format };
  std::string file; ///< "-" for standard input
  std::vector<std::string> arguments;
  Mode mode = Mode::run;
};
/// `tabwright applescript`: runs a script and prints its result in source form, checks its syntax, or lays it out.
/// Nothing is printed for `missing value`. Errors in the script are told with their places, and their exit code is
/// returned, not thrown; arguments that aren't UTF-8 are wrong use.
ExitCode appleScript(const AppleScriptCommand& command);

struct MarkdownCommand {
  enum class Form {
    markdown,
    gitHubMarkdown, ///< as `GetPageText` gives it
    richText
  };
  std::string file = "-"; ///< "-" for standard input
  Form form = Form::markdown;
  std::string base;         ///< of `gitHubMarkdown`: the page's address, or empty
  bool isMainAlone = false; ///< of `gitHubMarkdown`: without what frames the page's content
};
/// `tabwright markdown`: prints a page's HTML as Markdown or as Rich Text Format, as the details of a tab give its
/// selection, or as GitHub Flavored Markdown. A page whose main content can't be told is printed whole, and standard
/// error says so.
ExitCode markdown(const MarkdownCommand& command);

struct WorkflowCommand {
  enum class Mode { run, dryRun };
  std::string file;                   ///< "-" for standard input
  std::vector<std::string> variables; ///< "NAME=VALUE", in place of the file's values
  Mode mode = Mode::run;
};
/// `tabwright workflow`: checks a file of steps against the catalogue, and runs them, or tells what would run. What
/// steps print goes to standard output, progress to standard error where that is a terminal. Mistakes in the file and
/// the step that fails are told with their places, and their exit code is returned, not thrown.
ExitCode workflow(const WorkflowCommand& command);

/// `browser` is a short name or an id of the table, in any case.
struct BrowserCommand {
  std::string browser;
  /// None: the browser's own start page, and nothing for one that runs already.
  std::optional<std::string> address;
  bool isHeadless = false;
  std::vector<std::string> switches; ///< passed on to the browser as they are
  OutputForm output = OutputForm::automatic;
};
/// `tabwright browser`: starts a browser with a profile of its own and remote debugging on, and returns when it can be
/// driven, or throws `NoBrowser` after a minute. The browser goes on running. One that runs already with that profile
/// only opens the address.
ExitCode browser(const BrowserCommand& command);

struct ConnectCommand {
  std::optional<std::string> browser; ///< as in BrowserCommand; none: all that are installed
  bool isWaiting = true;
  int patience = 300; ///< seconds to wait for the helper at most
};
/// `tabwright connect`: installs the helper for this user in the browsers that the user has, tells each step that is
/// the user's to do, and waits until one of the browsers can be driven through it. At a terminal the page with the
/// switch is opened, too. What is installed stays, however the wait ends. Running it again changes nothing that is as
/// it should be. Throws ConnectFault.
ExitCode connect(const ConnectCommand& command);

struct DisconnectCommand {
  std::optional<std::string> browser; ///< none: all, and every folder that the helper was ever installed in
};
/// `tabwright disconnect`: removes what `connect` has written, and ends the relays. Goes on where one browser fails,
/// and throws that failure in the end. Nothing to remove is no failure.
ExitCode disconnect(const DisconnectCommand& command);

/// `tabwright browsers`: lists the browsers with their profiles, the roads by which they are reached, the helper's
/// switches, and what is to be done.
ExitCode browsers(OutputForm output);

/// `tabwright open`: shows the program's windows, in the process that has them already or in a new one. Returns at
/// once.
ExitCode open();

/// `tabwright mcp`: serves the catalogue to an agent by the Model Context Protocol on standard input and output, until
/// the input ends; what still runs then is stopped. An agent that leaves is no failure.
ExitCode mcp();

struct UpdateCommand {
  enum class Mode { check, install };
  Mode mode = Mode::check;
  OutputForm output = OutputForm::automatic;
};
/// `tabwright update`: tells whether there is a newer version, and what is to be done. Installs it on demand where this
/// copy is one that the program itself replaces; where it isn't, that is a failure, whose sentence says what to do.
ExitCode update(const UpdateCommand& command);

/// `tabwright completion`: prints the script that a shell reads to complete words with `complete`. Throws `UsageError`
/// for another shell than bash, zsh and fish.
ExitCode completion(const std::string& shell);

/// The hidden command that the scripts of `completion` call.
inline constexpr std::string_view completeCommand = "complete";
/// `tabwright complete`: prints what may stand in place of the last of `words`, which are those behind "tabwright", a
/// line each: the word, a tab and what it means. The line ":files" stands for the names of files. `program` has all
/// commands declared.
ExitCode complete(const CLI::App& program, const std::vector<std::string>& words);

/// `tabwright manual`: prints the manual page in the man macros of roff, with all actions, or only the one named.
ExitCode manual(const CLI::App& program, const std::string& action);

/// `tabwright help`: prints the help of a command or an action, or of all commands for an empty word.
ExitCode help(const CLI::App& program, const std::string& word);

/// `tabwright` alone: prints the commands to begin with, and whether there is a browser that can be driven.
ExitCode overview();

} // namespace tabwright::app
