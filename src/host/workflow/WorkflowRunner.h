#pragma once

#include "host/Catalogue.h"
#include "host/workflow/Workflow.h"
#include "intents/ActionHost.h"
#include "platform/Task.h"

#include <cstddef>
#include <functional>
#include <string>

namespace tabwright::host::workflow {

/// The one who watches a workflow run. Called on the run's executor.
class WorkflowObserver {
public:
  virtual ~WorkflowObserver() = default;

  /// A step begins, with the variables as they are; `depth` counts the steps around it.
  virtual void stepBegins(const Step& step, const Variables& variables, std::size_t depth) = 0;
  /// It has ended, all inside it too; `failure` is the reason when it failed, else empty. Not called for steps that
  /// were cancelled.
  virtual void stepEnds(const Step& step, const std::string& failure) = 0;
  /// Round `round`, from 1, of a repeat step's `rounds` begins.
  virtual void roundBegins(const Step& step, std::size_t depth, std::size_t round, std::size_t rounds) = 0;
  /// A step that is going to succeed has something to tell beside its result.
  virtual void noticed(const Step& step, const platform::Notice& notice) = 0;
  /// A step prints a line; the text has no line feed behind it, and may have some within.
  virtual void printed(const std::string& text) = 0;
};

/// The content of a file by its path as a workflow names it. Throws `intents::UsageError`.
using FileReader = std::function<std::string(const std::string& path)>;

/// Runs the steps in order, one at a time, until the end or the first that fails: then throws a `StepFailure`. Steps
/// that have run stay done. Cancelling ends the step that runs, and the workflow. All references outlive the run;
/// `workflow` has been checked. `readFile` is asked for the files that its own text names, never for one
/// that a value names.
platform::Task<void> runWorkflow(const Workflow& workflow, Variables variables, const Catalogue& catalogue,
                                 intents::ActionHost& host, WorkflowObserver& observer, const FileReader& readFile);

} // namespace tabwright::host::workflow
