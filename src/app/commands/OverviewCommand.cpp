// Nothing is started and nothing connected to: the process table and the browsers' own files tell.
#include "app/BrowserLauncher.h"
#include "app/commands/Commands.h"
#include "platform/BrowserTable.h"

#include <fmt/core.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::app {
namespace {

struct Row {
  std::string_view command;
  std::string_view meaning;
};
/// The commands that a newcomer needs first.
constexpr Row firstCommands[]{
    {"tabwright browser chromium", "starts a browser to drive"},
    {"tabwright run GetListOfTabs", "runs an action: this one lists the tabs"},
    {"tabwright actions [NAME]", "lists the actions, or shows one in full"},
    {"tabwright applescript FILE", "runs an AppleScript of yours"},
    {"tabwright help", "shows all commands"},
};

std::string statusOfBrowsers() {
  const std::vector<platform::RunningBrowser> browsers = platform::RunningBrowsers().findAll();
  std::string status;
  bool isAnyReachable = false;
  for (const platform::BrowserFacts& facts : platform::browserTable) {
    const auto isOfKind = [&](const platform::RunningBrowser& browser) { return browser.facts == &facts; };
    if (std::ranges::none_of(browsers, isOfKind))
      continue;
    const bool isReachable = std::ranges::any_of(
        browsers, [&](const platform::RunningBrowser& browser) { return isOfKind(browser) && accepts(browser); });
    isAnyReachable = isAnyReachable || isReachable;
    status += isReachable ? fmt::format("{} is running and can be driven.\n", facts.name)
                          : fmt::format("{} is running, but not with remote debugging: open "
                                        "chrome://inspect/#remote-debugging in it and\nswitch it on.\n",
                                        facts.name);
  }
  if (browsers.empty())
    return "No browser is running that can be driven: “tabwright browser chromium” starts one.\n";
  return status + (isAnyReachable ? "" : "Or start one with a profile of its own: tabwright browser chromium\n");
}

} // namespace

ExitCode overview() {
  std::cout << "Tabwright drives a browser from outside it.\n\n";
  for (const Row& row : firstCommands)
    std::cout << fmt::format("  {:<29}{}\n", row.command, row.meaning);
  std::cout << '\n' << statusOfBrowsers();
  return ExitCode::done;
}

} // namespace tabwright::app
