#include "app/Composition.h"
#include "app/FailureReport.h"
#include "app/Interruptible.h"
#include "app/TextInput.h"
#include "app/commands/Commands.h"
#include "applescript/Interpreter.h"

#include <fmt/core.h>

#include <algorithm>
#include <iostream>
#include <string_view>

namespace tabwright::app {
namespace {

using applescript::ScriptError;

std::size_t characterCount(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::ranges::count_if(utf8, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u; }));
}

// NAME:LINE:COLUMN: SENTENCE, the line of the script, and carets below what the error is about.
std::string placed(const ScriptError& error, std::string_view source, const std::string& name) {
  if (!error.range() || error.range()->offset > source.size())
    return fmt::format("{}: {}\n", name, error.errorDescription());
  const applescript::SourceRange range = *error.range();
  const applescript::SourcePosition position = applescript::positionOf(source, range.offset);
  const std::size_t start = range.offset == 0 ? 0 : source.find_last_of("\r\n", range.offset - 1) + 1;
  const std::size_t end = std::min(source.find_first_of("\r\n", range.offset), source.size());
  const std::string_view line = source.substr(start, end - start);
  std::string margin;
  for (const char character : source.substr(start, range.offset - start)) {
    if (character == '\t')
      margin += '\t';
    else if ((static_cast<unsigned char>(character) & 0xC0u) != 0x80u)
      margin += ' ';
  }
  const std::size_t marked = std::min(range.length, end - range.offset);
  const std::size_t carets = std::max<std::size_t>(1, characterCount(source.substr(range.offset, marked)));
  return fmt::format("{}:{}:{}: {}\n{}\n{}{}\n", name, position.line, position.column, error.errorDescription(), line,
                     margin, std::string(carets, '^'));
}

} // namespace

ExitCode appleScript(const AppleScriptCommand& command) {
  const std::string source = command.file == "-" ? readStandardInput() : readTextFile(command.file);
  const std::string name = command.file == "-" ? "standard input" : command.file;
  Composition composition;
  applescript::Interpreter& interpreter = composition.interpreter();

  if (command.mode == AppleScriptCommand::Mode::check) {
    const std::vector<ScriptError> errors = interpreter.check(source);
    for (const ScriptError& error : errors)
      std::cerr << placed(error, source, name);
    return errors.empty() ? ExitCode::done : ExitCode::failed;
  }

  try {
    const applescript::CompiledScript script = interpreter.compile(source);
    applescript::Value result;
    runInterruptibly([&](std::stop_token stop) {
      std::vector<applescript::Value> arguments(command.arguments.begin(), command.arguments.end());
      result = interpreter.run(*script, std::move(arguments), std::move(stop));
    });
    if (!result.isMissing())
      std::cout << applescript::sourceForm(result) << '\n';
    return ExitCode::done;
  } catch (const ScriptError& error) {
    std::cerr << placed(error, source, name);
    return exitCodeOf(error);
  }
}

} // namespace tabwright::app
