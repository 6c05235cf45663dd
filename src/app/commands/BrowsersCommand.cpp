// A browser is listed by its user data directories: each has a process of its own, a port, and a helper in each
// profile. Nothing is started and no session opened.
#include "app/BrowserReach.h"
#include "app/commands/Commands.h"
#include "connect/ConnectionAdvice.h"
#include "connect/ConnectionState.h"
#include "connect/HelperParts.h"
#include "platform/TerminalCells.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tabwright::app {
namespace {

using connect::ConnectionState;
using connect::HelperFiles;
using connect::ProfileState;

constexpr std::chrono::milliseconds portPatience{800};

struct Listed {
  ConnectionState state;
  std::optional<BrowserReach> port; ///< of one that runs
  bool isOwn = false;               ///< a profile of this program's, which is driven by its port alone
};

const char* nameOf(BrowserReach::Kind kind) {
  switch (kind) {
  case BrowserReach::Kind::drivable:
    return "on";
  case BrowserReach::Kind::silent:
    return "silent";
  case BrowserReach::Kind::broken:
    return "broken";
  case BrowserReach::Kind::scriptsForbidden: // which a port isn't
  case BrowserReach::Kind::debuggingOff:
    break;
  }
  return "off";
}

const char* nameOf(HelperFiles files) {
  switch (files) {
  case HelperFiles::absent:
    return "absent";
  case HelperFiles::other:
    return "other";
  case HelperFiles::present:
    return "present";
  case HelperFiles::forAllUsers:
    break;
  }
  return "forAllUsers";
}

const char* nameOf(connect::Sandbox sandbox) {
  switch (sandbox) {
  case connect::Sandbox::none:
    return "none";
  case connect::Sandbox::flatpak:
    return "flatpak";
  case connect::Sandbox::snap:
    break;
  }
  return "snap";
}

std::vector<Listed> listAll(const connect::HelperParts& parts) {
  const connect::UserDataPlaces places = connect::UserDataPlaces::ofThisProcess();
  std::vector<Listed> all;
  for (ConnectionState& state :
       connect::lookAtConnections(connect::findUserDataDirectories(nullptr, places), parts, {}))
    all.push_back({.state = std::move(state), .port = {}});
  // The first of those with one directory is the browser; others are processes that it is about to start.
  for (const platform::RunningBrowser& browser : std::views::reverse(places.running)) {
    const bool isListed = std::ranges::any_of(all, [&](const Listed& each) {
      // By its directory too: another process of one that is just starting or ending may have been seen before.
      return each.state.directory.path == browser.profileDirectory ||
             (each.state.browser && each.state.browser->process == browser.process);
    });
    if (isListed)
      continue;
    all.push_back({.state = {.directory = {.facts = browser.facts, .path = browser.profileDirectory},
                             .browser = browser,
                             .hasSeenFiles = false,
                             .profiles = {},
                             .complaint = {}},
                   .port = {},
                   .isOwn = true});
  }
  std::ranges::sort(all, {}, [](const Listed& each) {
    return std::tie(each.state.directory.facts, each.isOwn, each.state.directory.path);
  });
  for (Listed& each : all) {
    if (each.state.browser)
      each.port = portReachOf(*each.state.browser, portPatience);
  }
  return all;
}

std::vector<connect::Advice> adviceOn(const Listed& each, const connect::HelperParts& parts) {
  return each.isOwn ? std::vector<connect::Advice>() : connect::adviceFor(each.state, parts);
}

// ----------------------------------------------------------------------------------------------------------- for
// people

std::string sentenceOf(const ProfileState& profile) {
  const std::string name = profile.profile.directory.empty()
                               ? "a profile"
                               : fmt::format("{} ({})", profile.profile.name, profile.profile.directory);
  if (!profile.helper)
    return fmt::format("{}: {}", name,
                       profile.profile.isHelperRemoved ? "the helper was removed by hand" : "no helper reached");
  return fmt::format("{}: helper {}, scripts {}, private windows {}, files {}", name, profile.helper->helperVersion,
                     profile.helper->mayRunScripts ? "allowed" : "forbidden",
                     profile.helper->seesPrivateWindows ? "seen" : "invisible",
                     profile.helper->readsFiles ? "allowed" : "forbidden");
}

std::string roadsOf(const Listed& each) {
  const ConnectionState& state = each.state;
  if (!state.browser)
    return "not running";
  std::string roads;
  if (state.isConnected())
    roads = "by the helper";
  if (each.port && each.port->kind == BrowserReach::Kind::drivable)
    roads += roads.empty() ? "by its debugging port" : " and by its debugging port";
  std::string text = fmt::format("running (process {}), ", state.browser->process);
  text += roads.empty() ? "can’t be driven yet" : "can be driven " + roads;
  if (each.port && each.port->kind == BrowserReach::Kind::silent)
    text += "; its debugging port answers nothing";
  if (each.port && each.port->kind == BrowserReach::Kind::broken)
    text += "; its debugging port: " + each.port->detail;
  return text;
}

void printForPeople(const std::vector<Listed>& all, const connect::HelperParts& parts) {
  const platform::BrowserFacts* last = nullptr;
  for (const Listed& each : all) {
    const ConnectionState& state = each.state;
    if (state.directory.facts != last)
      std::cout << fmt::format("{}{}\n", last ? "\n" : "", state.directory.facts->name);
    last = state.directory.facts;
    std::cout << platform::wrapped(fmt::format("{}: {}", state.directory.path.string(), roadsOf(each)), 2);
    for (const ProfileState& profile : state.profiles)
      std::cout << platform::wrapped(sentenceOf(profile), 4);
    for (const connect::Advice& advice : adviceOn(each, parts))
      std::cout << platform::wrapped("→ " + advice.sentence, 4);
  }
  if (all.empty())
    std::cout << "None of the browsers that Tabwright knows is installed.\n";
}

// --------------------------------------------------------------------------------------------------------- for
// programs

boost::json::object jsonOf(const ProfileState& profile) {
  boost::json::object object{{"directory", profile.profile.directory},
                             {"name", profile.profile.name},
                             {"isHelperRemoved", profile.profile.isHelperRemoved},
                             {"helper", nullptr}};
  if (profile.helper)
    object["helper"] = {{"version", profile.helper->helperVersion},
                        {"allowsUserScripts", profile.helper->mayRunScripts},
                        {"allowsIncognito", profile.helper->seesPrivateWindows},
                        {"allowsFiles", profile.helper->readsFiles}};
  return object;
}

boost::json::object jsonOf(const Listed& each, const connect::HelperParts& parts) {
  const ConnectionState& state = each.state;
  boost::json::array profiles;
  for (const ProfileState& profile : state.profiles)
    profiles.push_back(jsonOf(profile));
  boost::json::array advice;
  for (const connect::Advice& one : adviceOn(each, parts))
    advice.push_back(boost::json::object{{"kind", connect::nameOf(one.kind)}, {"sentence", one.sentence}});
  const bool hasPort = each.port && each.port->kind == BrowserReach::Kind::drivable;
  boost::json::array roads;
  if (state.isConnected())
    roads.emplace_back("helper");
  if (hasPort)
    roads.emplace_back("port");
  return {{"browser", {{"id", state.directory.facts->id}, {"name", state.directory.facts->name}}},
          {"directory", state.directory.path.string()},
          {"sandbox", nameOf(state.directory.sandbox)},
          {"pid", state.browser ? boost::json::value(state.browser->process) : boost::json::value()},
          {"roads", std::move(roads)},
          {"port", each.port ? boost::json::value(nameOf(each.port->kind)) : boost::json::value()},
          {"helperFiles", nameOf(state.files)},
          {"profiles", std::move(profiles)},
          {"advice", std::move(advice)}};
}

} // namespace

ExitCode browsers(OutputForm output) {
  const connect::HelperParts parts = connect::findHelperParts(std::filesystem::read_symlink("/proc/self/exe"));
  const std::vector<Listed> all = listAll(parts);
  if (output != OutputForm::json && ::isatty(STDOUT_FILENO) == 1) {
    printForPeople(all, parts);
    return ExitCode::done;
  }
  boost::json::array list;
  for (const Listed& each : all)
    list.push_back(jsonOf(each, parts));
  std::cout << boost::json::serialize(list) << '\n';
  return ExitCode::done;
}

} // namespace tabwright::app
