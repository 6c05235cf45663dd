#pragma once

#include "app/commands/Commands.h"

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace tabwright::app {

/// The choices that the words of one command line make.
struct Choices {
  std::string logLevel;
  bool isJson = false;

  RunCommand run;
  ScriptCommand script;
  ActionsCommand actions;
  AppleScriptCommand appleScript;
  MarkdownCommand markdown;
  WorkflowCommand workflow;
  BrowserCommand browser;
  UpdateCommand update;
  std::string manualAction;
  std::string shell;
  std::string helpWord;

  std::function<ExitCode()> chosen;

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
