// A missing value is asked for and the action started again, until it has all it needs: nothing has run before that.
#include "app/RunAction.h"

#include "app/FailureReport.h"
#include "app/ParameterArguments.h"
#include "app/ResultFiles.h"
#include "app/ResultView.h"
#include "app/TerminalHost.h"
#include "host/ActionHelp.h"
#include "host/Perform.h"
#include "intents/NeedsValue.h"
#include "intents/UsageError.h"

#include <boost/json/serialize.hpp>

#include <algorithm>
#include <utility>

namespace tabwright::app {
namespace {

/// The caller's user, as far as an action may speak to them.
class CallerHost final : public intents::ActionHost {
public:
  CallerHost(RunCaller& caller, ReportForm form) : caller_(caller), form_(form) {}

  platform::Task<void> requestConfirmation(intents::LocalizedText question) override {
    const std::optional<std::string> answer = co_await caller_.ask(question.text() + " [y/N]");
    if (!answer || !TerminalHost::isYes(*answer))
      throw intents::ConfirmationRefused();
  }

  void notice(const platform::Notice& notice) override { caller_.tell(noticeReport(notice, form_)); }

private:
  RunCaller& caller_;
  const ReportForm form_;
};

std::string shown(const host::ActionResult& result, const ActionRun& run) {
  if (run.command.output == OutputForm::automatic && run.terminalWidth)
    return resultView(result, *run.terminalWidth);
  if (result.value.is_null() && run.command.output == OutputForm::automatic)
    return {};
  return boost::json::serialize(result.value) + "\n";
}

} // namespace

RunCommand runCommandIn(const std::vector<std::string>& words) {
  RunCommand command;
  auto word = words.begin();
  for (; word != words.end() && *word == "--json"; ++word)
    command.output = OutputForm::json;
  if (word == words.end())
    throw intents::UsageError("No action is named. “tabwright actions” lists them.");
  command.name = *word;
  command.parameters.assign(word + 1, words.end());
  return command;
}

bool wantsJson(const RunCommand& command) {
  return command.output == OutputForm::json || std::ranges::count(command.parameters, "--json") > 0;
}

platform::Task<std::string> runAction(const host::Catalogue& catalogue, ActionRun run, RunCaller& caller) {
  ParameterArguments arguments = parseArguments(catalogue, run.command.name, run.command.parameters);
  if (arguments.wantsHelp)
    co_return host::actionHelp(catalogue, run.command.name);
  if (arguments.output == OutputForm::json)
    run.command.output = OutputForm::json;
  for (const ParameterFile& wanted : arguments.files)
    arguments.parameters[wanted.parameter].second = co_await caller.read(wanted.file);
  CallerHost host(caller, run.command.output == OutputForm::json ? ReportForm::json : ReportForm::sentence);
  for (;;) {
    std::optional<intents::NeedsValue> missing;
    try {
      host::ActionResult result = co_await host::perform(catalogue, run.command.name, arguments.parameters, host);
      if (arguments.filesFolder)
        result = withFilesIn(run.directory / *arguments.filesFolder, std::move(result));
      co_return shown(result, run);
    } catch (const intents::NeedsValue& thrown) {
      missing = thrown;
    }
    std::optional<std::string> answer = co_await caller.ask(missing->question());
    if (!answer)
      throw intents::NeedsValue(*missing);
    std::erase_if(arguments.parameters, [&](const auto& given) { return given.first == missing->parameter(); });
    arguments.parameters.emplace_back(missing->parameter(), std::move(*answer));
  }
}

} // namespace tabwright::app
