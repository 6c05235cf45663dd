#pragma once

#include "app/ExitCode.h"

#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace tabwright::app {

/// Tells what the reader of the command line found: help or the version that was asked for goes to standard output, and
/// yields `ExitCode::done`; a mistake is thrown as a `UsageError`. A word that is no command is answered with the
/// commands and actions that may be meant. `words` are those behind the program's name, without a browser's own behind
/// "--"; `program` has all commands declared, and has parsed them.
ExitCode tellOf(const CLI::ParseError& error, const CLI::App& program, const std::vector<std::string>& words);

/// The help of a command or an action; of all commands for an empty word. Throws `UsageError` with the
/// nearest names for one that is neither.
[[nodiscard]] std::string helpOn(const std::string& word, const CLI::App& program);

} // namespace tabwright::app
