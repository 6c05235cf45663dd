// Anything by which the browser would end with words of its own, or none, is refused before its start: a name that
// nobody knows, and windows without a desktop. Programs that read the output get JSON without asking for it, as no
// terminal is there.
#include "app/BrowserLauncher.h"
#include "app/Interruptible.h"
#include "app/commands/Commands.h"
#include "host/NearestNames.h"
#include "intents/UsageError.h"
#include "platform/AsciiCase.h"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <fmt/format.h>

#include <iostream>
#include <string>
#include <unistd.h>
#include <vector>

namespace tabwright::app {
namespace {

using platform::BrowserFacts;

const BrowserFacts& requireBrowser(const std::string& wanted) {
  const BrowserFacts* facts = platform::findBrowser(platform::lowercased(wanted));
  // Safari has a row in the table, but no program here.
  if (facts && !facts->executables.empty())
    return *facts;
  std::vector<std::string> names;
  for (const BrowserFacts& row : platform::browserTable) {
    if (!row.executables.empty())
      names.emplace_back(row.shortName);
  }
  throw intents::UsageError(fmt::format("There is no browser “{}” to start. Choose one of: {}.{}", wanted,
                                        fmt::join(names, ", "), host::didYouMean(wanted, names, "")));
}

} // namespace

ExitCode browser(const BrowserCommand& command) {
  const BrowserFacts& facts = requireBrowser(command.browser);
  if (!command.isHeadless)
    requireDesktop(facts);
  BrowserLaunch launch = launchWithOwnProfile(facts);
  launch.isHeadless = command.isHeadless;
  launch.address = command.address.value_or("");
  launch.switches = command.switches;

  LaunchedBrowser launched;
  const auto waiting = client::waitingLineAtTerminal(std::string(facts.name));
  runInterruptibly(
      [&](const std::stop_token& stop) { launched = launchBrowser(launch, logFileOf(facts), startPatience, stop); },
      waiting.get());

  if (command.output == OutputForm::json || ::isatty(STDOUT_FILENO) != 1) {
    boost::json::object object;
    object["targetContext"] = boost::json::object{{"id", facts.id}, {"name", facts.name}};
    object["pid"] = launched.process;
    object["profile"] = launch.profileDirectory.string();
    object["wasRunning"] = launched.wasRunning;
    std::cout << boost::json::serialize(object) << '\n';
  } else {
    std::cout << fmt::format("{} {} (process {}, profile {})\n", facts.name,
                             launched.wasRunning ? "was running" : "is running", launched.process,
                             launch.profileDirectory.string());
  }
  return ExitCode::done;
}

} // namespace tabwright::app
