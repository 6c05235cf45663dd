#pragma once

#include "app/commands/Commands.h"
#include "host/Catalogue.h"
#include "platform/Task.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::app {

/// The process whose user wrote `tabwright run`: this one, or a client of the background host. It has what an action
/// mustn't take from the host: standard streams, a terminal, files by relative paths. Outlives the run; used on the
/// run's executor.
class RunCaller {
public:
  virtual ~RunCaller() = default;

  /// The whole of a file, by its path as the user wrote it, or of standard input for "-". Throws `UsageError`.
  virtual platform::Task<std::string> read(std::string file) = 0;

  /// True when there is somebody to ask, at a terminal.
  [[nodiscard]] virtual bool canAsk() const = 0;
  /// Asks the user a question and yields the line typed, without its line feed; nothing when there is nobody to ask or
  /// the input has ended. Cancelling ends the wait.
  virtual platform::Task<std::optional<std::string>> ask(std::string question) = 0;

  /// Puts texts onto standard output and standard error, at once; either may be empty. Never throws in the background
  /// host, whose client may be gone; in a process of its own an output that is lost is thrown.
  virtual void print(std::string output, std::string error) = 0;
};

/// One run as a command line orders it.
struct ActionRun {
  /// The action's name and its words, not yet read.
  RunCommand command;
  std::filesystem::path directory; ///< where relative paths of folders start
  bool isShownOnTerminal = false;  ///< whether standard output is one
  std::size_t terminalWidth = 80;  ///< its cells, or those of the terminal that questions are shown on
};

/// The command in the words behind `tabwright run`: perhaps some of its own, then the action, then its parameters.
/// Throws `UsageError` when there is no action among them.
[[nodiscard]] RunCommand runCommandIn(const std::vector<std::string>& words);

/// True when the words ask for JSON, also in place of an error's sentence.
[[nodiscard]] bool wantsJson(const RunCommand& command);

/// Reads the parameters, performs the action, and yields what goes to standard output: the result in the form asked
/// for, or the action's help. A missing value is asked for, and the action started again with the answer. With `--each`
/// results, and failures with the items that they belong to, are printed as they come, and nothing is left to yield.
///
/// Throws the action's failure, or `EachFailure` at the end when some of several failed; what a command line does wrong
/// is a `UsageError`. Cancelling stops the script, and all that would follow. `catalogue` outlives the run.
platform::Task<std::string> runAction(const host::Catalogue& catalogue, ActionRun run, RunCaller& caller);

} // namespace tabwright::app
