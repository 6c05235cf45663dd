// Anything by which the browser would end with words of its own, or none, is refused before its start: a name that
// nobody knows, and windows without a desktop. Programs that read the output get JSON without asking for it, as no
// terminal is there.
#include "app/BrowserLauncher.h"
#include "app/BrowserName.h"
#include "app/Interruptible.h"
#include "app/commands/Commands.h"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <iostream>
#include <string>
#include <unistd.h>

namespace tabwright::app {

ExitCode browser(const BrowserCommand& command) {
  const platform::BrowserFacts& facts = requireBrowser(command.browser, "to start");
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
