#pragma once

#include "host/Catalogue.h"
#include "host/workflow/Workflow.h"

#include <map>
#include <string>

namespace tabwright::host::workflow {

/// Looks for everything that can be known to go wrong before the first step runs: actions and parameters that don't
/// exist, values that can't be, values that are missing, variables that no earlier step gives, ways into a result that
/// its type doesn't have. Throws `InvalidWorkflow` with all of it. Runs nothing and reads no file; a workflow that
/// passes may still fail by what only the run knows.
void checkWorkflow(const Workflow& workflow, const Catalogue& catalogue);

/// The variables that a run begins with: those of the file, and in their place the ones given from outside as texts,
/// which are read as JSON where the file has a list or a map. Throws `UsageError` for one that the file doesn't have,
/// for one without a value, and for texts that aren't UTF-8 or not the JSON that they must be.
[[nodiscard]] Variables firstVariables(const Workflow& workflow, const std::map<std::string, std::string>& given);

} // namespace tabwright::host::workflow
