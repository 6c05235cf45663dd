// Nothing is started: the process table, the browsers' own files and a question at their ports tell. Neither the
// catalogue nor the desktop is needed for that.
#include "app/BrowserReach.h"
#include "app/commands/Commands.h"
#include "platform/BrowserTable.h"
#include "platform/TerminalCells.h"

#include <fmt/core.h>

#include <chrono>
#include <future>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <utility>
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

constexpr std::chrono::milliseconds lookPatience{800}; // with all of them, who are looked at together

std::string sentenceOf(const platform::BrowserFacts& facts, const BrowserReach& reach) {
  switch (reach.kind) {
  case BrowserReach::Kind::drivable:
    return fmt::format("{} is running and can be driven.", facts.name);
  case BrowserReach::Kind::silent:
    return fmt::format("{} is running, but answers nothing: it is frozen, or very busy. Look at its windows, or end it "
                       "and start it again.",
                       facts.name);
  case BrowserReach::Kind::broken:
    return fmt::format("{} is running, but can’t be reached at its debugging port: {}. End it and start it again.",
                       facts.name, reach.detail);
  case BrowserReach::Kind::debuggingOff:
    break;
  }
  return fmt::format("{} is running, but not with remote debugging: open chrome://inspect/#remote-debugging in it and "
                     "switch it on.",
                     facts.name);
}

std::string statusOfBrowsers() {
  struct Look {
    const platform::BrowserFacts* facts;
    std::future<BrowserReach> reach;
  };
  std::vector<Look> looks;
  for (const platform::RunningBrowser& browser : platform::RunningBrowsers().findAll())
    // Each look may take its whole patience, so they go side by side.
    looks.push_back({browser.facts, std::async(std::launch::async, reachOf, browser, lookPatience)});
  if (looks.empty())
    return "No browser is running that can be driven: “tabwright browser chromium” starts one.\n";
  // Of several of one kind the one that is reached best counts.
  std::map<const platform::BrowserFacts*, BrowserReach> best;
  for (Look& look : looks) {
    BrowserReach reach = look.reach.get();
    const auto [place, isFirst] = best.try_emplace(look.facts, reach);
    if (!isFirst && reach.kind < place->second.kind)
      place->second = std::move(reach);
  }
  std::string status;
  bool isAnyDrivable = false;
  for (const platform::BrowserFacts& facts : platform::browserTable) {
    // In the table's order, so that two calls tell the same.
    const auto found = best.find(&facts);
    if (found == best.end())
      continue;
    status += platform::wrapped(sentenceOf(facts, found->second), 0);
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
