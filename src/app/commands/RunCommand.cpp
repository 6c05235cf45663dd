#include "app/Composition.h"
#include "app/Interruptible.h"
#include "app/ParameterArguments.h"
#include "app/ResultFiles.h"
#include "app/ResultView.h"
#include "app/TerminalHost.h"
#include "app/commands/Commands.h"
#include "host/ActionHelp.h"
#include "host/Perform.h"
#include "intents/NeedsValue.h"

#include <boost/json/serialize.hpp>

#include <iostream>
#include <optional>
#include <unistd.h>

// A missing value is asked for and the action started again, until it has all it needs: nothing has run before that.

namespace tabwright::app {
namespace {

host::ActionResult performInterruptibly(const host::Catalogue& catalogue, const std::string& name,
                                        const host::ParameterTexts& parameters) {
  TerminalHost terminal;
  std::optional<host::ActionResult> result;
  const auto work = [&]() -> platform::Task<void> {
    result = co_await host::perform(catalogue, name, parameters, terminal);
  };
  runInterruptibly(work());
  return std::move(*result);
}

void print(const host::ActionResult& result, OutputForm form) {
  if (form == OutputForm::json || ::isatty(STDOUT_FILENO) != 1) {
    if (!result.value.is_null() || form == OutputForm::json)
      std::cout << boost::json::serialize(result.value) << '\n';
    return;
  }
  std::cout << resultView(result, terminalWidth());
}

} // namespace

ExitCode run(RunCommand command) {
  Composition composition;
  ParameterArguments arguments = readArguments(composition.catalogue(), command.name, command.parameters);
  if (arguments.wantsHelp) {
    std::cout << host::actionHelp(composition.catalogue(), command.name);
    return ExitCode::done;
  }
  if (arguments.output == OutputForm::json)
    command.output = OutputForm::json;
  for (;;) {
    try {
      host::ActionResult result = performInterruptibly(composition.catalogue(), command.name, arguments.parameters);
      if (arguments.filesFolder)
        result = withFilesIn(*arguments.filesFolder, std::move(result));
      print(result, command.output);
      return ExitCode::done;
    } catch (const intents::NeedsValue& missing) {
      const std::optional<std::string> answer = TerminalHost::ask(missing.question());
      if (!answer)
        throw;
      std::erase_if(arguments.parameters, [&](const auto& given) { return given.first == missing.parameter(); });
      arguments.parameters.emplace_back(missing.parameter(), *answer);
    }
  }
}

} // namespace tabwright::app
