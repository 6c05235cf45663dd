#pragma once

#include "app/commands/Commands.h"
#include "host/Catalogue.h"
#include "host/ParameterReader.h"

#include <optional>
#include <string>
#include <vector>

namespace tabwright::app {

/// What stands behind an action's name on the command line: its parameters, and switches of the command itself.
struct ParameterArguments {
  host::ParameterTexts parameters;
  OutputForm output = OutputForm::automatic;
  std::optional<std::string> filesFolder; ///< where the result's files are to be written
  bool wantsHelp = false;
};

/// Reads `--name value`, `--name=value`, and `--name` alone for a boolean parameter, which sets it to true. The value
/// of a tab, window or file parameter may be `@FILE` or `-`, which stand for the content of that file or of standard
/// input; a text is always taken as it is. `--json`, `--save-files FOLDER` and `--help` are the command's own.
///
/// Throws `UsageError` for an action that doesn't exist, a word that belongs to no parameter, a parameter without a
/// value, and a file that can't be read.
[[nodiscard]] ParameterArguments readArguments(const host::Catalogue& catalogue, const std::string& action,
                                               const std::vector<std::string>& words);

} // namespace tabwright::app
