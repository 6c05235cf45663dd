// The same steps as the windows' check takes, in this process, on one thread.
#include "app/FeedUpdates.h"
#include "app/Interruptible.h"
#include "app/commands/Commands.h"
#include "browserdata/HTMLToMarkdown.h"
#include "platform/Whitespace.h"
#include "shell/Varn.h"
#include "updates/UpdateFault.h"
#include "updates/UpdateOutcome.h"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <iostream>
#include <string>

namespace tabwright::app {
namespace {

using updates::UpdateOutcome;

// Names of a program's choices, which stay when sentences change.
const char* nameOf(UpdateOutcome::Kind kind) {
  switch (kind) {
  case UpdateOutcome::Kind::upToDate:
    return "upToDate";
  case UpdateOutcome::Kind::available:
    return "available";
  case UpdateOutcome::Kind::installed:
    return "installed";
  case UpdateOutcome::Kind::noFeed:
    return "noFeed";
  case UpdateOutcome::Kind::failed:
    break;
  }
  return "failed";
}

void print(const UpdateOutcome& outcome, OutputForm form) {
  if (form == OutputForm::json) {
    boost::json::object object{{"outcome", nameOf(outcome.kind)}, {"message", outcome.headline}};
    object["version"] = outcome.version.empty() ? boost::json::value() : boost::json::value(outcome.version);
    object["canBeInstalled"] = outcome.canBeInstalled;
    object["advice"] = outcome.advice;
    std::cout << boost::json::serialize(object) << '\n';
    return;
  }
  std::cout << outcome.headline << '\n';
  if (!outcome.advice.empty())
    std::cout << outcome.advice << '\n';
  const std::string notes = browserdata::HTMLToMarkdown{.html = outcome.notes}.convert();
  if (!platform::isBlank(notes))
    std::cout << '\n' << platform::trimmingWhitespaceAndNewlines(notes) << '\n';
  if (!outcome.notesLink.empty())
    std::cout << '\n' << outcome.notesLink << '\n';
}

UpdateOutcome outcomeOfCommand(const UpdateCommand& command, const updates::UpdateFacts& facts,
                               const std::stop_token& stop) {
  const platform::CallLimits limits{.stop = stop};
  if (facts.feed.empty()) {
    UpdateOutcome outcome = updates::noFeedOutcome(updates::findInstallation(facts.program, limits));
    if (command.mode == UpdateCommand::Mode::install)
      throw platform::failure(updates::UpdateFault::notOurs, outcome.headline + " " + outcome.advice);
    return outcome;
  }
  const updates::UpdateCheck check = updates::checkForUpdate(facts, limits);
  if (!check.update || command.mode == UpdateCommand::Mode::check)
    return updates::outcomeOf(check, facts.build);
  return updates::installedOutcome(*check.update, updates::installUpdate(facts, check, limits));
}

} // namespace

ExitCode update(const UpdateCommand& command) {
  const updates::UpdateFacts facts = updateFacts(std::string(shell::Varn::App::updateFeed()));
  UpdateOutcome outcome;
  const auto waiting = client::waitingLineAtTerminal("update");
  runInterruptibly([&](const std::stop_token& stop) { outcome = outcomeOfCommand(command, facts, stop); },
                   waiting.get());
  print(outcome, command.output);
  return ExitCode::done;
}

} // namespace tabwright::app
