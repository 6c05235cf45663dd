#pragma once

#include "app/commands/Commands.h"
#include "host/ParameterReader.h"
#include "intents/Intent.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::app {

/// A parameter whose value is the content of a file.
struct ParameterFile {
  std::size_t parameter = 0; ///< its place among the parameters
  std::string file;          ///< a path, or "-" for standard input
};

/// All that stands behind an action's name on the command line: its parameters, and switches of the command itself.
struct ParameterArguments {
  /// In the order of the words, names as they were written. A value that is to be read from a file is the word that
  /// says so, until it is read.
  host::ParameterTexts parameters;
  std::vector<ParameterFile> files; ///< those that are still to be read into the parameters
  OutputForm output = OutputForm::automatic;
  std::optional<std::string> filesFolder; ///< where the result's files are to be written
  bool isForEach = false;                 ///< the action runs for each item of a list
  /// The action's help is asked for, and nothing else counts.
  bool wantsHelp = false;
};

/// Reads `--name value`, `--name=value`, and `--name` alone for a boolean parameter, which sets it to true. The value
/// of a tab, window or file parameter may be `@FILE` or `-`, which stand for the content of that file or of standard
/// input; a text is always taken as it is. The command's own words (`client::runWords`) and `--help` stand among them.
/// Names that the action doesn't have, and values that don't fit, pass: `host::readParameters` judges them.
///
/// Throws `UsageError` for a word that belongs to no parameter, and for a parameter without a value.
[[nodiscard]] ParameterArguments parseArguments(const intents::Intent& action, const std::vector<std::string>& words);

/// The same with all files read, of this process: `files` is empty. Blocks for standard input. Throws `UsageError` also
/// for a file that can't be read.
[[nodiscard]] ParameterArguments readArguments(const intents::Intent& action, const std::vector<std::string>& words);

} // namespace tabwright::app
