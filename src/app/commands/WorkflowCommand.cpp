// The file is read, checked against the catalogue and given its variables before anything runs, so what can be known to
// be wrong costs no half run. Its mistakes and failed steps are told here, where the text is at hand that shows their
// places; other failures go on to the command line.
#include "app/Composition.h"
#include "app/FailureReport.h"
#include "app/Interruptible.h"
#include "app/PlacedText.h"
#include "app/TerminalHost.h"
#include "app/TextInput.h"
#include "app/WorkflowProgress.h"
#include "app/commands/Commands.h"
#include "client/CallerSide.h"
#include "host/workflow/StepWords.h"
#include "host/workflow/WorkflowCheck.h"
#include "host/workflow/WorkflowReader.h"
#include "host/workflow/WorkflowRunner.h"
#include "intents/UsageError.h"
#include "platform/linux/SystemClock.h"

#include <iostream>
#include <map>
#include <memory>

namespace tabwright::app {

namespace flow = host::workflow;

namespace {

std::map<std::string, std::string> givenVariables(const std::vector<std::string>& assignments) {
  std::map<std::string, std::string> given;
  for (const std::string& assignment : assignments) {
    // The first sign ends the name; a value may hold more of them.
    const std::size_t sign = assignment.find('=');
    if (sign == std::string::npos || sign == 0)
      throw intents::UsageError("--set wants NAME=VALUE, not “" + assignment + "”.");
    if (!given.emplace(assignment.substr(0, sign), assignment.substr(sign + 1)).second)
      throw intents::UsageError("“" + assignment.substr(0, sign) + "” is set twice.");
  }
  return given;
}

std::unique_ptr<flow::WorkflowObserver> observer(const std::string& title, const platform::Clock& clock) {
  const client::TerminalFacts terminal = client::terminalFacts();
  // Progress is for a person; in a log or a pipe it would be noise.
  if (!terminal.isError)
    return std::make_unique<WorkflowOutput>(std::cout, std::cerr);
  auto progress =
      std::make_unique<WorkflowProgress>(std::cerr, static_cast<std::size_t>(terminal.width), std::cout, clock);
  progress->showTitle(title);
  return progress;
}

} // namespace

ExitCode workflow(const WorkflowCommand& command) {
  const std::string source = command.file == "-" ? readStandardInput() : readTextFile(command.file);
  const std::string name = command.file == "-" ? "standard input" : command.file;
  const auto tell = [&](flow::Place place, const std::string& sentence) {
    std::cerr << placedText(name, source, place.offset, place.length, sentence);
  };
  try {
    const flow::Workflow steps = flow::readWorkflow(source);
    Composition composition;
    flow::checkWorkflow(steps, composition.catalogue());
    const flow::Variables variables = flow::firstVariables(steps, givenVariables(command.variables));
    if (command.mode == WorkflowCommand::Mode::dryRun) {
      std::cout << flow::outline(steps, variables);
      return ExitCode::done;
    }
    const platform::SystemClock clock;
    const auto watching = observer(steps.title, clock);
    TerminalHost user;
    const flow::FileReader readFile = [](const std::string& path) { return readTextFile(path); };
    runInterruptibly(flow::runWorkflow(steps, variables, composition.catalogue(), user, *watching, readFile));
    return ExitCode::done;
  } catch (const flow::InvalidWorkflow& invalid) {
    for (const flow::Problem& problem : invalid.problems())
      tell(problem.place, problem.sentence);
    return exitCodeOf(invalid);
  } catch (const flow::StepFailure& failure) {
    tell(failure.place(), failure.errorDescription());
    if (const std::string advice = adviceFor(failure); !advice.empty())
      std::cerr << advice << '\n';
    return exitCodeOf(failure);
  }
}

} // namespace tabwright::app
