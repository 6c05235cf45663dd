#pragma once

#include "app/commands/Commands.h"

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace tabwright::app {

/// The choices that the words of one command line make. The parser writes into it while it parses, so it neither moves
/// nor ends before `chosen` has run.
struct Choices {
  /// As written: "debug", "info" or "error" are known; empty for none on standard error.
  std::string logLevel;
  /// The flag --json of `actions`, `browser`, `browsers` and `update`; `run` keeps its own among its words.
  bool isJson = false;

  /// One member per command; only that of the command that was chosen is filled.
  RunCommand run;
  ScriptCommand script;
  ActionsCommand actions;
  AppleScriptCommand appleScript;
  MarkdownCommand markdown;
  WorkflowCommand workflow;
  BrowserCommand browser;
  ConnectCommand connect;
  DisconnectCommand disconnect;
  UpdateCommand update;
  std::string manualAction;
  std::string shell;
  std::string helpWord;

  /// Runs the command, and throws its failure. Never empty once commands are declared: without a command it is the
  /// overview.
  std::function<ExitCode()> chosen;

  /// The form that the flag asks for, for commands that have it.
  [[nodiscard]] OutputForm output() const { return isJson ? OutputForm::json : OutputForm::automatic; }
};

/// Declares all commands with their options. Parsing with `program` then fills `choices`, whose `chosen` runs the
/// command; both outlive what they are used for. Help, completion and manual are derived from `program`.
void declareCommands(CLI::App& program, Choices& choices);

/// Operands are named by the kind of word that they take, where that kind is known to completion.
namespace operands {
inline constexpr const char* action = "ACTION";
inline constexpr const char* browser = "BROWSER";
inline constexpr const char* file = "FILE";
inline constexpr const char* shell = "SHELL";
inline constexpr const char* word = "WORD"; ///< a command or an action
} // namespace operands

} // namespace tabwright::app
