// Errors of the script are told here and not by the command line: only here are its text and its name at hand, which
// show each error with its line and a mark below it. All other failures go on to the command line.
#include "app/Composition.h"
#include "app/FailureReport.h"
#include "app/Interruptible.h"
#include "app/PlacedText.h"
#include "app/TextInput.h"
#include "app/commands/Commands.h"
#include "applescript/Interpreter.h"
#include "intents/UsageError.h"
#include "platform/Utf8.h"

#include <fmt/core.h>

#include <iostream>
#include <string_view>

namespace tabwright::app {
namespace {

using applescript::ScriptError;

std::string placed(const ScriptError& error, std::string_view source, const std::string& name) {
  // A place outside of the text can't be shown in it.
  if (!error.range() || error.range()->offset > source.size())
    return fmt::format("{}: {}\n", name, error.errorDescription());
  return placedText(name, source, error.range()->offset, error.range()->length, error.errorDescription());
}

} // namespace

ExitCode appleScript(const AppleScriptCommand& command) {
  for (const std::string& argument : command.arguments) {
    if (platform::malformedByte(argument))
      throw intents::UsageError(
          fmt::format("Arguments of a script are text in UTF-8, which “{}” is not.", platform::wellFormed(argument)));
  }
  const std::string source = command.file == "-" ? readStandardInput() : readTextFile(command.file);
  const std::string name = command.file == "-" ? "standard input" : command.file;
  Composition composition;
  applescript::Interpreter& interpreter = composition.interpreter();

  if (command.mode != AppleScriptCommand::Mode::run) {
    const std::vector<ScriptError> errors = interpreter.check(source);
    for (const ScriptError& error : errors)
      std::cerr << placed(error, source, name);
    if (errors.empty() && command.mode == AppleScriptCommand::Mode::format)
      std::cout << interpreter.formatted(source);
    return errors.empty() ? ExitCode::done : ExitCode::failed;
  }

  try {
    const applescript::CompiledScript script = interpreter.compile(source);
    applescript::Value result;
    const auto waiting = client::waitingLineAtTerminal(name);
    const auto work = [&](std::stop_token stop) {
      std::vector<applescript::Value> arguments(command.arguments.begin(), command.arguments.end());
      result = interpreter.run(*script, std::move(arguments), std::move(stop));
    };
    runInterruptibly(work, waiting.get());
    if (!result.isMissing())
      std::cout << applescript::sourceForm(result) << '\n';
    return ExitCode::done;
  } catch (const ScriptError& error) {
    std::cerr << placed(error, source, name);
    if (const std::string advice = adviceFor(error); !advice.empty())
      std::cerr << advice << '\n';
    return exitCodeOf(error);
  }
}

} // namespace tabwright::app
