// The names by which Flatpak and Snap are known are those of the folders that they keep for their programs.
#include "connect/UserDataDirectory.h"

#include "platform/linux/BaseDirectories.h"
#include "platform/linux/InstalledBrowsers.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tabwright::connect {
namespace {

namespace fs = std::filesystem;
using platform::BrowserFacts;
using platform::RunningBrowser;

constexpr std::string_view flatpakFolder = ".var/app/";
constexpr std::string_view snapFolder = "snap/";
constexpr std::string_view configurationFolder = ".config/";

Sandbox sandboxOf(std::string_view belowHome) {
  if (belowHome.starts_with(flatpakFolder))
    return Sandbox::flatpak;
  return belowHome.starts_with(snapFolder) ? Sandbox::snap : Sandbox::none;
}

/// By its place; a process that has another number inside is in a sandbox as well.
Sandbox sandboxOf(const RunningBrowser& browser, const fs::path& home) {
  const Sandbox byPlace = sandboxOf(browser.profileDirectory.lexically_relative(home).string());
  return byPlace == Sandbox::none && browser.innerProcess != browser.process ? Sandbox::flatpak : byPlace;
}

std::vector<UserDataDirectory> defaultsOf(const BrowserFacts& facts, const UserDataPlaces& places) {
  std::vector<UserDataDirectory> directories;
  for (const std::string_view below : facts.profileDirectories) {
    const bool isOfConfiguration = below.starts_with(configurationFolder);
    directories.push_back({.facts = &facts,
                           .path = isOfConfiguration ? places.configuration / below.substr(configurationFolder.size())
                                                     : places.home / below,
                           .sandbox = sandboxOf(below)});
  }
  return directories;
}

bool isBelow(const fs::path& path, const fs::path& folder) {
  const fs::path relative = path.lexically_relative(folder);
  return !relative.empty() && *relative.begin() != "..";
}

void add(std::vector<UserDataDirectory>& directories, UserDataDirectory directory) {
  std::error_code ignored;
  const bool isThere = std::ranges::any_of(directories, [&](const UserDataDirectory& other) {
    return other.path == directory.path || fs::equivalent(other.path, directory.path, ignored);
  });
  if (!isThere)
    directories.push_back(std::move(directory));
}

} // namespace

UserDataPlaces UserDataPlaces::ofThisProcess() {
  const char* home = std::getenv("HOME");
  return {.home = home ? home : "",
          .configuration = platform::configHome(),
          .ownProfiles = platform::dataHome() / "tabwright" / "browsers",
          .installed = platform::findInstalledBrowsers(platform::InstallationPlaces::ofThisProcess()),
          .running = platform::RunningBrowsers().findAll()};
}

std::vector<UserDataDirectory> findUserDataDirectories(const BrowserFacts* wanted, const UserDataPlaces& places) {
  std::vector<UserDataDirectory> directories;
  std::error_code ignored;
  for (const BrowserFacts& facts : platform::browserTable) {
    if (wanted && wanted != &facts)
      continue;
    std::vector<UserDataDirectory> own;
    const bool isInstalled = std::ranges::find(places.installed, &facts) != places.installed.end();
    const std::vector<UserDataDirectory> defaults = defaultsOf(facts, places);
    for (const UserDataDirectory& directory : defaults) {
      if (isInstalled && fs::is_directory(directory.path, ignored))
        add(own, directory);
    }
    for (const RunningBrowser& browser : places.running) {
      if (browser.facts == &facts && browser.owner == ::geteuid() && !browser.profileDirectory.empty() &&
          !isBelow(browser.profileDirectory, places.ownProfiles))
        add(own, {.facts = &facts, .path = browser.profileDirectory, .sandbox = sandboxOf(browser, places.home)});
    }
    if (own.empty() && isInstalled && !defaults.empty())
      own.push_back(defaults.front());
    directories.insert(directories.end(), own.begin(), own.end());
  }
  return directories;
}

std::vector<UserDataDirectory> findDefaultDirectories(const UserDataPlaces& places) {
  std::vector<UserDataDirectory> directories;
  std::error_code ignored;
  for (const BrowserFacts& facts : platform::browserTable) {
    for (UserDataDirectory& directory : defaultsOf(facts, places)) {
      if (fs::is_directory(directory.path, ignored))
        directories.push_back(std::move(directory));
    }
  }
  return directories;
}

} // namespace tabwright::connect
