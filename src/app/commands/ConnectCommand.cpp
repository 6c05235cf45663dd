// Standard output is flushed at each sentence: whoever reads it, a person or a program, acts on it while the command
// waits.
#include "app/BrowserName.h"
#include "app/Interruptible.h"
#include "app/commands/Commands.h"
#include "connect/ConnectFault.h"
#include "connect/ConnectRecord.h"
#include "connect/ConnectWatch.h"
#include "connect/ConnectionAdvice.h"
#include "connect/HelperInstallation.h"
#include "connect/HelperParts.h"
#include "platform/Sleep.h"
#include "platform/TerminalCells.h"

#include <fmt/format.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <unistd.h>
#include <vector>

namespace tabwright::app {
namespace {

using namespace std::chrono_literals;
using connect::UserDataDirectory;

constexpr std::chrono::milliseconds lookPause = 500ms;

void say(const std::string& sentence) {
  // A line of its own for a program.
  const bool isTerminal = ::isatty(STDOUT_FILENO) == 1;
  std::cout << (isTerminal ? platform::wrapped(sentence, 0) : platform::onOneLine(sentence) + "\n") << std::flush;
}

std::string sentenceOf(const UserDataDirectory& directory, connect::HelperFiles files,
                       const std::vector<std::filesystem::path>& written) {
  const std::string_view name = directory.facts->name;
  if (files == connect::HelperFiles::forAllUsers)
    return fmt::format("{}: the helper is installed for all users.", name);
  if (written.empty())
    return fmt::format("{}: the helper was installed in {} already.", name, directory.path.string());
  std::vector<std::string> paths;
  paths.reserve(written.size());
  for (const std::filesystem::path& path : written)
    paths.push_back(path.lexically_relative(directory.path).string());
  return fmt::format("{}: the helper is installed in {} ({}).", name, directory.path.string(), fmt::join(paths, ", "));
}

/// The directories in which the helper is installed now. Throws the last failure where there is none.
std::vector<UserDataDirectory> install(const std::vector<UserDataDirectory>& directories,
                                       const connect::HelperParts& parts) {
  std::vector<UserDataDirectory> installed;
  connect::ConnectRecord record(connect::ConnectRecord::usualFile());
  for (const UserDataDirectory& directory : directories) {
    try {
      const auto written = connect::installHelper(directory, parts, record);
      say(sentenceOf(directory, connect::helperFilesIn(directory, parts), written));
      installed.push_back(directory);
    } catch (const platform::Failure& failure) {
      if (installed.empty() && &directory == &directories.back())
        throw;
      std::cerr << fmt::format("tabwright: {}\n", failure.errorDescription());
    }
  }
  return installed;
}

/// Opens the page with the switch in each profile where it is off, once. Only for a person at a terminal.
void openSwitches(const std::vector<connect::ConnectionState>& states, const connect::HelperParts& parts,
                  std::set<std::string>& opened, const std::stop_token& stop) {
  if (::isatty(STDOUT_FILENO) != 1)
    return;
  for (const connect::ConnectionState& state : states) {
    for (const connect::ProfileState& profile : state.profiles) {
      if (profile.helper && !profile.helper->mayRunScripts && opened.insert(profile.helper->profile).second &&
          connect::openPage(state, profile, parts.settingsPage(), {.stop = stop}))
        say("That page is open in the browser now.");
    }
  }
}

void awaitHelper(const std::vector<UserDataDirectory>& directories, const connect::HelperParts& parts, int patience,
                 const std::stop_token& stop) {
  const platform::CallLimits limits = platform::CallLimits{.stop = stop}.within(std::chrono::seconds(patience));
  connect::ConnectWatch watch(parts);
  std::set<std::string> opened; // by the profiles' marks
  bool isTold = false;
  while (true) {
    const auto states = connect::lookAtConnections(directories, parts, {.stop = stop});
    // A look that was interrupted tells nothing.
    if (stop.stop_requested())
      throw Interrupted();
    for (const std::string& sentence : watch.observe(states))
      say(sentence);
    if (watch.isConnected())
      return;
    if (limits.hasPassed())
      throw watch.failureAfter(patience);
    openSwitches(states, parts, opened, stop);
    if (!isTold)
      say(fmt::format("Waiting for it, {} seconds at most. Ctrl-C ends the wait, and what is installed stays.",
                      patience));
    isTold = true;
    platform::sleepWithin(limits, lookPause);
  }
}

} // namespace

ExitCode connect(const ConnectCommand& command) {
  const platform::BrowserFacts* wanted = command.browser ? &requireBrowser(*command.browser, "to connect") : nullptr;
  const connect::HelperParts parts = connect::findHelperParts(std::filesystem::read_symlink("/proc/self/exe"));
  const auto directories = connect::findUserDataDirectories(wanted, connect::UserDataPlaces::ofThisProcess());
  if (directories.empty())
    throw platform::failure(connect::ConnectFault::notInstalled,
                            fmt::format("{}, so there is nothing to connect. Install it as a package of the system’s, "
                                        "and run the command again.",
                                        wanted ? fmt::format("{} is not installed", wanted->name)
                                               : "None of the browsers that Tabwright knows is installed"));
  const std::vector<UserDataDirectory> installed = install(directories, parts);
  if (!command.isWaiting) {
    for (const connect::ConnectionState& state : connect::lookAtConnections(installed, parts, {})) {
      for (const connect::Advice& advice : connect::adviceFor(state, parts))
        say(advice.sentence);
    }
    return ExitCode::done;
  }
  runInterruptibly([&](const std::stop_token& stop) { awaitHelper(installed, parts, command.patience, stop); });
  say("Connected: “tabwright run GetListOfTabs” lists your tabs.");
  return ExitCode::done;
}

} // namespace tabwright::app
