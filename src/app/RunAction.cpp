// The words are read, the files that they name are asked of the caller, and the action is performed: once, or for each
// item of a list. A missing value is asked for and the action started again, until it has all it needs: nothing has run
// before that. A list goes on behind an item that fails, but not behind a caller that has gone or cancelled.
#include "app/RunAction.h"

#include "app/BrowserListing.h"
#include "app/Choice.h"
#include "app/EachItem.h"
#include "app/FailureReport.h"
#include "app/ParameterArguments.h"
#include "app/ResultFiles.h"
#include "app/ResultView.h"
#include "app/TerminalHost.h"
#include "client/RunWords.h"
#include "host/ActionHelp.h"
#include "host/Perform.h"
#include "intents/NeedsValue.h"
#include "intents/UsageError.h"
#include "platform/AsciiCase.h"
#include "platform/TerminalCells.h"
#include "rpc/RpcError.h"

#include <boost/asio/error.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/system/system_error.hpp>
#include <fmt/core.h>

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

  void notice(const platform::Notice& notice) override { caller_.print("", noticeReport(notice, form_)); }

private:
  RunCaller& caller_;
  const ReportForm form_;
};

/// One run on its way, be it for one item or for many.
class Running {
public:
  Running(const host::Catalogue& catalogue, ActionRun run, ParameterArguments arguments, RunCaller& caller)
      : catalogue_(catalogue), run_(std::move(run)), arguments_(std::move(arguments)), caller_(caller),
        host_(caller, arguments_.output == OutputForm::json ? ReportForm::json : ReportForm::sentence) {}

  platform::Task<std::string> once() { co_return co_await shown(co_await performed(arguments_.parameters)); }

  // One after the other, since each may change what the next one finds.
  platform::Task<void> forEach(GivenList list) {
    host::ParameterTexts parameters = arguments_.parameters;
    // The list stands at a known parameter: it was found by its declaration.
    const intents::ValueType type =
        catalogue_.declaration(run_.command.name).findParameter(parameters[list.parameter].first)->declaration().type;
    std::size_t failed = 0;
    for (std::size_t index = 0; index < list.items.size(); ++index) {
      const boost::json::value& item = list.items[index];
      parameters[list.parameter].second = textOfItem(item);
      std::string error;
      try {
        const host::ActionResult result = co_await performed(parameters);
        caller_.print(isForTerminal() ? shownInBrief(result) : asJson(result), "");
      } catch (const rpc::RpcError&) {
        throw; // the caller has gone
      } catch (const platform::Failure& failure) {
        error = told(failure, type, item, index);
      }
      // A cancelled action may end in any failure, which then isn't the item's.
      if ((co_await boost::asio::this_coro::cancellation_state).cancelled() != boost::asio::cancellation_type::none)
        throw boost::system::system_error(boost::asio::error::operation_aborted);
      if (!error.empty()) {
        ++failed;
        caller_.print("", std::move(error));
      }
    }
    if (failed > 0)
      throw EachFailure(run_.command.name, failed, list.items.size());
    if (list.items.empty())
      caller_.print("", "tabwright: The list is empty: nothing to do.\n");
  }

private:
  platform::Task<host::ActionResult> performed(host::ParameterTexts parameters) {
    for (;;) {
      // A coroutine can't wait inside of a handler, so the question is asked behind it.
      std::optional<intents::NeedsValue> missing;
      try {
        host::ActionResult result = co_await host::perform(catalogue_, run_.command.name, parameters, host_);
        if (arguments_.filesFolder)
          result = withFilesIn(run_.directory / *arguments_.filesFolder, std::move(result));
        co_return result;
      } catch (const intents::NeedsValue& thrown) {
        missing = thrown;
      }
      std::optional<std::string> answer = co_await askForValue(catalogue_, run_, parameters, *missing, caller_, host_);
      if (!answer)
        throw intents::NeedsValue(*missing);
      // The value may have been given, and refused.
      std::erase_if(parameters,
                    [&](const auto& given) { return platform::equalIgnoringCase(given.first, missing->parameter()); });
      parameters.emplace_back(missing->parameter(), std::move(*answer));
    }
  }

  [[nodiscard]] bool isForTerminal() const {
    return arguments_.output == OutputForm::automatic && run_.isShownOnTerminal;
  }

  platform::Task<std::string> shown(host::ActionResult result) {
    if (!isForTerminal())
      co_return asJson(result);
    TableAdditions additions;
    additions.places = co_await placesOf(catalogue_, result, host_);
    co_return resultView(result, run_.terminalWidth, additions);
  }

  [[nodiscard]] std::string asJson(const host::ActionResult& result) const {
    // Nothing is printed for nothing, but JSON that was asked for is always a value.
    if (result.value.is_null() && arguments_.output == OutputForm::automatic)
      return {};
    return boost::json::serialize(result.value) + "\n";
  }

  // The result of one of many: a line.
  [[nodiscard]] static std::string shownInBrief(const host::ActionResult& result) {
    std::string lines;
    for (const std::string& line : host::linesOf(result))
      lines += platform::onOneLine(line) + "\n";
    return lines;
  }

  [[nodiscard]] std::string told(const platform::Failure& failure, const intents::ValueType& type,
                                 const boost::json::value& item, std::size_t index) const {
    if (arguments_.output == OutputForm::automatic)
      return fmt::format("tabwright: item {}, {}: {}", index + 1, nameOfItem(type, item),
                         reportOf(failure, ReportForm::sentence).text);
    boost::json::value report = boost::json::parse(reportOf(failure, ReportForm::json).text);
    // A program gets the whole item, to try it again.
    report.as_object()["item"] = item;
    return boost::json::serialize(report) + "\n";
  }

  const host::Catalogue& catalogue_;
  const ActionRun run_;
  const ParameterArguments arguments_;
  RunCaller& caller_;
  CallerHost host_;
};

// A tab or window that is read may be empty where the command before the pipe has failed.
void requireContent(const ParameterFile& wanted, const std::string& parameter, const std::string& content) {
  if (content.find_first_not_of(" \t\r\n") == std::string::npos)
    throw intents::UsageError(
        wanted.file == "-"
            ? fmt::format("Nothing came on standard input for {}: has the command before the pipe failed?", parameter)
            : fmt::format("The file {} for {} is empty.", wanted.file, parameter));
}

// Other programs take options in front of names.
void requireNameFirst(const host::Catalogue& catalogue, const RunCommand& command) {
  const std::vector<std::string> names = catalogue.names();
  const auto isAction = [&](const std::string& word) { return std::ranges::find(names, word) != names.end(); };
  if (isAction(command.name) || command.words.empty() || !command.words.front().starts_with('-'))
    return;
  const auto action = std::ranges::find_if(command.words, isAction);
  if (action != command.words.end())
    throw intents::UsageError(fmt::format("The action’s name comes before its parameters: tabwright run {} {} …",
                                          *action, command.words.front()));
}

} // namespace

RunCommand runCommandIn(const std::vector<std::string>& words) {
  const std::size_t place = client::placeOfAction(words);
  if (place == words.size())
    throw intents::UsageError("No action is named. “tabwright actions” lists them.");
  RunCommand command{.name = words[place], .words = words};
  command.words.erase(command.words.begin() + static_cast<std::ptrdiff_t>(place));
  return command;
}

bool wantsJson(const RunCommand& command) {
  return std::ranges::count(command.words, client::runWords::json.word) > 0;
}

platform::Task<std::string> runAction(const host::Catalogue& catalogue, ActionRun run, RunCaller& caller) {
  requireNameFirst(catalogue, run.command);
  const intents::Intent& action = catalogue.declaration(run.command.name);
  ParameterArguments arguments = parseArguments(action, run.command.words);
  if (arguments.wantsHelp)
    co_return host::actionHelp(catalogue, run.command.name);
  for (const ParameterFile& wanted : arguments.files) {
    auto& [name, text] = arguments.parameters[wanted.parameter];
    text = co_await caller.read(wanted.file);
    // An empty file is a file; an empty tab is a mistake.
    if (action.findParameter(name)->declaration().type.kind == intents::ValueKind::entity)
      requireContent(wanted, name, text);
  }
  std::optional<GivenList> list;
  if (arguments.isForEach)
    list = listForEach(action, arguments.parameters);
  else
    requireNoList(action, arguments.parameters);
  Running running(catalogue, std::move(run), std::move(arguments), caller);
  if (!list)
    co_return co_await running.once();
  co_await running.forEach(std::move(*list));
  co_return std::string();
}

} // namespace tabwright::app
