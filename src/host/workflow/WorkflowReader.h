#pragma once

#include "host/workflow/Workflow.h"

#include <string_view>

namespace tabwright::host::workflow {

/// Reads a workflow's file: YAML 1.2 (https://yaml.org/spec/1.2.2/), as docs/workflows.md describes it. Plain scalars
/// are null, booleans and numbers by the core schema, quoted ones always texts.
///
/// Throws `InvalidWorkflow` with every problem found, at most twenty: text that is no YAML, keys that don't belong
/// where they stand, values of the wrong kind, paths that can't be. What actions and variables there are isn't looked
/// at here.
[[nodiscard]] Workflow readWorkflow(std::string_view source);

} // namespace tabwright::host::workflow
