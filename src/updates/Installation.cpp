#include "updates/Installation.h"

#include "updates/ProgramRun.h"
#include "updates/UpdateText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tabwright::updates {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view ownName = "tabwright";

struct PackageManager {
  std::array<const char*, 2> question; ///< ends with 0 when the file named behind it is from a package
  const char* command;
};
constexpr PackageManager packageManagers[]{
    {{"dpkg", "-S"}, "apt install --only-upgrade tabwright"},
    {{"rpm", "-qf"}, "dnf upgrade tabwright"},
    {{"pacman", "-Qo"}, "pacman -Syu"},
};

// The names in a folder; none for one that isn't there.
std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    names.push_back(entry->path().filename().string());
  std::ranges::sort(names);
  return names;
}

// The first name that no archive puts there; empty when there is none.
std::string foreignName(const fs::path& folder) {
  constexpr std::array<std::string_view, 4> ownFolders{"bin", "lib", "libexec", "share"};
  for (const std::string& name : namesIn(folder)) {
    if (std::ranges::find(ownFolders, name) == ownFolders.end())
      return name;
  }
  for (const char* programs : {"bin", "lib", "libexec"}) {
    for (const std::string& name : namesIn(folder / programs)) {
      if (!name.starts_with(ownName))
        return std::string(programs) + "/" + name;
    }
  }
  return {};
}

std::string obstacleIn(const fs::path& folder) {
  const std::string name = folder.filename().string();
  if (!holdsProgram(folder) || !name.starts_with(ownName))
    return updateText("It was not unpacked from an archive of Tabwright, so it is updated as it was installed.");
  if (name.ends_with(replacedEnding))
    return updateText("It has been replaced by a newer one: start that.");
  if (const std::string foreign = foreignName(folder); !foreign.empty())
    return updateText("Its folder %1$@ holds “%2$@”, which is not Tabwright’s: move that elsewhere first.",
                      {folder.string(), foreign});
  if (::access(folder.parent_path().c_str(), W_OK) != 0 || ::access(folder.c_str(), W_OK) != 0)
    return updateText("Its folder %1$@ may not be changed by you.", {folder.string()});
  return {};
}

} // namespace

bool holdsProgram(const fs::path& folder) {
  return ::access((folder / clientPath).c_str(), X_OK) == 0 && ::access((folder / hostPath).c_str(), X_OK) == 0;
}

fs::path ownProgram() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error);
}

Installation findInstallation(const fs::path& program, const platform::CallLimits& limits) {
  for (const PackageManager& manager : packageManagers) {
    const auto answer = runProgram({manager.question[0], manager.question[1], program.string()}, limits);
    if (answer && answer->exitCode == 0)
      return {.kind = Installation::Kind::package, .command = manager.command, .folder = {}, .obstacle = {}};
  }
  const fs::path folder = program.parent_path().parent_path().parent_path();
  std::string obstacle = obstacleIn(folder);
  const auto kind = obstacle.empty() ? Installation::Kind::archive : Installation::Kind::other;
  return {.kind = kind, .command = {}, .folder = folder, .obstacle = std::move(obstacle)};
}

} // namespace tabwright::updates
