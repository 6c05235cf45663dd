#pragma once

#include "host/Catalogue.h"
#include "host/ParameterReader.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabwright::host {

/// An example of a run.
struct ExampleCommand {
  /// The same values, for those who run it themselves.
  ParameterTexts parameters;
  std::string commandLine; ///< "tabwright run NAME --parameter value …", quoted for a POSIX shell
};

/// Runs of an action that show what it needs: one with as little as it takes, one with all its declared examples, and
/// one for each other form of its summary that is reached by setting a choice. No two are alike. Each can be run as
/// printed, given a browser that has what the examples name. Throws `UsageError` for a name that isn't there.
[[nodiscard]] std::vector<ExampleCommand> exampleCommands(const Catalogue& catalogue, std::string_view name);

} // namespace tabwright::host
