#include "app/Composition.h"
#include "app/ParameterArguments.h"
#include "app/commands/Commands.h"
#include "client/RunWords.h"
#include "host/ActionHelp.h"
#include "host/Perform.h"
#include "intents/UsageError.h"

#include <iostream>

namespace tabwright::app {

ExitCode script(const ScriptCommand& command) {
  Composition composition;
  const ParameterArguments arguments =
      readArguments(composition.catalogue().declaration(command.name), command.parameters);
  if (arguments.wantsHelp) {
    std::cout << host::actionHelp(composition.catalogue(), command.name);
    return ExitCode::done;
  }
  if (arguments.isForEach)
    throw intents::UsageError(std::string(client::runWords::each.word) +
                              " belongs to “tabwright run”: a program is of one run.");
  // No line feed is added: the output is the file, byte for byte.
  std::cout << host::scriptText(composition.catalogue(), command.name, arguments.parameters) << std::flush;
  return ExitCode::done;
}

} // namespace tabwright::app
