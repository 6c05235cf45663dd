#include "app/CommandLine.h"

#include "app/CommandDeclarations.h"
#include "app/CommandNames.h"
#include "app/FailureReport.h"
#include "app/Interruptible.h"
#include "app/OutputStreams.h"
#include "app/RunAction.h"
#include "client/StandardStreams.h"
#include "platform/LogSinks.h"
#include "platform/Logger.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <exception>
#include <iostream>
#include <span>
#include <string_view>

// Parsing only chooses what to do; doing comes afterwards, in one place, so that a mistake in the words, a failure of
// the command and an output that is lost are all told by the same rules, in words or as JSON, with the exit code that
// belongs to them.

namespace tabwright::app {
namespace {

// The form of an action's error may stand behind its name.
ReportForm reportForm(const Choices& choices) {
  const bool isJson = choices.isJson || wantsJson(choices.run);
  return isJson ? ReportForm::json : ReportForm::sentence;
}

bool installLog(const Choices& choices) {
  platform::LogSinks sinks{.file = platform::defaultLogFile(),
                           .fileLevel = platform::defaultFileLevel(),
                           .onLoss = [form = reportForm(choices)](const std::string& sentence) {
                             std::cerr << noticeReport({{"Log", "lost", {}}, sentence}, form);
                           }};
  if (!choices.logLevel.empty()) {
    sinks.standardErrorLevel = platform::logLevelNamed(choices.logLevel);
    if (!sinks.standardErrorLevel) {
      std::cerr << "There is no log level “" << choices.logLevel << "”: choose debug, info or error.\n";
      return false;
    }
  }
  platform::installLogSinks(sinks);
  return true;
}

ExitCode report(const platform::Failure& failure, const Choices& choices) {
  const FailureReport report = commandReportOf(failure, reportForm(choices));
  std::cerr << report.text;
  return report.exitCode;
}

ExitCode perform(const Choices& choices) {
  try {
    if (!installLog(choices))
      return ExitCode::wrongUse;
    const ExitCode code = choices.chosen();
    // Output that is lost is to be known before the exit code says that all is done.
    std::cout.flush();
    return code;
  } catch (const Interrupted&) {
    return ExitCode::interrupted;
  } catch (const OutputLost& lost) {
    // As other programs end in a pipe such as “| head”: silently, by the signal.
    if (lost.errorNumber() == EPIPE)
      client::endByBrokenPipe();
    return report(OutputFailure(lost), choices);
  } catch (const platform::Failure& failure) {
    return report(failure, choices);
  } catch (const std::exception& error) {
    std::cerr << "tabwright: " << error.what() << '\n';
    return ExitCode::failed;
  }
}

} // namespace

int runCommandLine(int argumentCount, char** arguments) {
  // A closed pipe comes as an error of the write, behind which the log and the exit code can still be seen to.
  std::signal(SIGPIPE, SIG_IGN);
  client::occupyClosedStreams();
  const OutputStreams streams;
  const std::span<char*> all(arguments, static_cast<std::size_t>(argumentCount));
  CLI::App program;
  Choices choices;
  declareCommands(program, choices);

  // Asked by shells, with words that are not complete: none of them is an order.
  if (all.size() > 1 && std::string_view(all[1]) == completeCommand)
    return static_cast<int>(complete(program, {all.begin() + 2, all.end()}));

  // Words behind “--” are the browser's; CLI11 would take them for its own.
  const auto separator = std::ranges::find(all, std::string_view("--"));
  const bool isBrowserCommand = std::find(all.begin(), separator, std::string_view("browser")) != separator;
  auto end = all.end();
  if (isBrowserCommand && separator != all.end()) {
    choices.browser.switches.assign(separator + 1, all.end());
    end = separator;
  }
  try {
    program.parse(static_cast<int>(end - all.begin()), arguments);
  } catch (const CLI::ParseError& error) {
    // The parser's complaint is a choice as well: it is told like the failure of a command.
    choices.chosen = [=, &program] { return tellOf(error, program, {all.begin() + 1, end}); };
  }
  return static_cast<int>(perform(choices));
}

} // namespace tabwright::app
