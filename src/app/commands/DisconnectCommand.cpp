// The relay's file goes first, then the relays that run: a helper whose relay ends looks for the file, and finds none.
#include "app/BrowserName.h"
#include "app/commands/Commands.h"
#include "connect/ConnectRecord.h"
#include "connect/ConnectionState.h"
#include "connect/HelperInstallation.h"
#include "connect/HelperParts.h"

#include <fmt/core.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iostream>
#include <utility>
#include <vector>

namespace tabwright::app {
namespace {

using connect::UserDataDirectory;

void addOnce(std::vector<UserDataDirectory>& directories, UserDataDirectory directory) {
  if (std::ranges::find(directories, directory.path, &UserDataDirectory::path) == directories.end())
    directories.push_back(std::move(directory));
}

/// All that may hold files of ours: of an uninstalled browser as well, and of one that no longer runs.
std::vector<UserDataDirectory> candidates(const platform::BrowserFacts* wanted, const connect::ConnectRecord& record) {
  const connect::UserDataPlaces places = connect::UserDataPlaces::ofThisProcess();
  std::vector<UserDataDirectory> directories = connect::findUserDataDirectories(wanted, places);
  for (UserDataDirectory& directory : connect::findDefaultDirectories(places)) {
    if (!wanted || directory.facts == wanted)
      addOnce(directories, std::move(directory));
  }
  for (const connect::ConnectRecord::Entry& entry : record.entries()) {
    const platform::BrowserFacts* facts = platform::findBrowser(entry.browser);
    if (facts && (!wanted || facts == wanted))
      addOnce(directories, {.facts = facts, .path = entry.directory});
  }
  return directories;
}

/// True when there was something to tell.
bool disconnectOne(const UserDataDirectory& directory, const connect::HelperParts& parts,
                   connect::ConnectRecord& record) {
  const std::string_view name = directory.facts->name;
  const auto removed = connect::removeHelper(directory.path, parts, record);
  for (const std::filesystem::path& path : removed)
    std::cout << fmt::format("{}: removed {}\n", name, path.string());
  if (connect::helperFilesIn(directory, parts) == connect::HelperFiles::forAllUsers) {
    std::cout << fmt::format("{}: the helper is installed for all users, and stays. To be without it, open {} in each "
                             "of your profiles and remove it there.\n",
                             name, parts.settingsPage());
    return true;
  }
  if (!removed.empty() && connect::endRelays(directory.path))
    std::cout << fmt::format("{}: its helper is cut off now, and leaves when {} is next started.\n", name, name);
  return !removed.empty();
}

} // namespace

ExitCode disconnect(const DisconnectCommand& command) {
  const platform::BrowserFacts* wanted = command.browser ? &requireBrowser(*command.browser, "to disconnect") : nullptr;
  const connect::HelperParts parts = connect::findHelperParts(std::filesystem::read_symlink("/proc/self/exe"));
  connect::ConnectRecord record(connect::ConnectRecord::usualFile());
  bool isAnyTold = false;
  std::exception_ptr failed;
  for (const UserDataDirectory& directory : candidates(wanted, record)) {
    try {
      isAnyTold |= disconnectOne(directory, parts, record);
    } catch (const platform::Failure& failure) {
      if (failed)
        std::cerr << fmt::format("tabwright: {}\n", failure.errorDescription());
      else
        failed = std::current_exception();
    }
  }
  if (failed)
    std::rethrow_exception(failed);
  if (!isAnyTold)
    std::cout << "There was nothing of Tabwright’s to remove.\n";
  return ExitCode::done;
}

} // namespace tabwright::app
