// Nothing is started: the process table, the browsers' own files and a question at their ports tell. Neither the
// catalogue nor the desktop is needed for that.
#include "app/BrowserReach.h"
#include "app/commands/Commands.h"
#include "platform/BrowserTable.h"
#include "platform/TerminalCells.h"

#include <fmt/core.h>

#include <chrono>
#include <iostream>
#include <string>
#include <string_view>

namespace tabwright::app {
namespace {

struct Row {
  std::string_view command;
  std::string_view meaning;
};
/// The commands that a newcomer needs first.
constexpr Row firstCommands[]{
    {"tabwright connect", "makes your own browser one that can be driven"},
    {"tabwright browser chromium", "starts another one to drive"},
    {"tabwright run GetListOfTabs", "runs an action: this one lists the tabs"},
    {"tabwright actions [NAME]", "lists the actions, or shows one in full"},
    {"tabwright applescript FILE", "runs an AppleScript of yours"},
    {"tabwright help", "shows all commands"},
};

constexpr std::chrono::milliseconds lookPatience{800}; // with all of them, who are looked at together

std::string statusOfBrowsers() {
  const BrowserReaches reaches = reachOfRunning(lookPatience);
  if (reaches.empty())
    return "No browser is running that can be driven: “tabwright browser chromium” starts one.\n";
  std::string status;
  bool isAnyDrivable = false;
  for (const platform::BrowserFacts& facts : platform::browserTable) {
    // In the table's order, so that two calls tell the same.
    const auto found = reaches.find(&facts);
    if (found == reaches.end())
      continue;
    status += platform::wrapped(sentenceOf(facts, found->second, platform::StringCatalogue::english()), 0);
    isAnyDrivable = isAnyDrivable || found->second.kind == BrowserReach::Kind::drivable;
  }
  return status + (isAnyDrivable ? "" : "Or start one with a profile of its own: tabwright browser chromium\n");
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
