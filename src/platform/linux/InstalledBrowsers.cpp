// Folders are opened, and the few files that an id of the table may lie in are opened in them: nothing is enumerated. A
// desktop has hundreds of entries, and the table asks for a few of known ids.
#include "platform/linux/InstalledBrowsers.h"

#include "platform/FileFailure.h"
#include "platform/Logger.h"
#include "platform/linux/BaseDirectories.h"
#include "platform/linux/BrowserExecutable.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tabwright::platform {

namespace {

namespace fs = std::filesystem;

const Logger browsersLog("InstalledBrowsers");

constexpr std::size_t mostBytes = std::size_t{1} << 20; // entries with all their translations have some ten thousand

/// Nothing for what can't be read, or is no file.
std::optional<DesktopEntry> readEntry(const FileDescriptor& file) {
  struct stat status{};
  if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
    return std::nullopt;
  const std::optional<std::string> text = file.readAll(mostBytes);
  return text ? parseDesktopEntry(*text) : std::nullopt;
}

/// The files below a folder that have this id: each of its dashes may as well be the border of a subfolder.
std::vector<std::string> filesOfID(std::string_view id) {
  std::vector<std::string> files{std::string(id) + ".desktop"};
  for (std::size_t place = 0; place < id.size(); ++place) {
    if (id[place] != '-')
      continue;
    // Every name so far comes a second time, with a border in place of this dash.
    for (std::size_t each = files.size(); each-- > 0;)
      files.emplace_back(files[each])[place] = '/';
  }
  return files;
}

enum class EntryState {
  absent,  ///< none here: look further down
  present, ///< the application is installed
  denied,  ///< it is not, whatever lies further down
};

EntryState stateOf(int folder, const std::string& name, std::string_view path) {
  // Without waiting: what lies there may be a pipe.
  const FileDescriptor file(::openat(folder, name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  // Else a browser would seem not to be installed because this process has too much open.
  if (!file.isOpen() && isShortage(errno))
    throw FileFailure("read", name, errno);
  if (!file.isOpen() && (errno == ENOENT || errno == ENOTDIR))
    return EntryState::absent;
  const std::optional<DesktopEntry> entry = readEntry(file);
  // A file that can't be opened comes here too, and is logged.
  if (!entry) {
    browsersLog.error("Failed to get info dictionary for {}", name.substr(name.rfind('/') + 1));
    return EntryState::absent;
  }
  const bool isThere =
      !entry->isHidden && entry->type == "Application" && (entry->tryExec.empty() || isProgram(entry->tryExec, path));
  return isThere ? EntryState::present : EntryState::denied;
}

bool hasEntry(std::string_view id, const std::vector<FileDescriptor>& folders, std::string_view path) {
  const std::vector<std::string> files = filesOfID(id);
  for (const FileDescriptor& folder : folders) {
    if (!folder.isOpen())
      continue;
    for (const std::string& file : files) {
      const EntryState state = stateOf(folder.number(), file, path);
      if (state != EntryState::absent)
        return state == EntryState::present;
    }
  }
  return false;
}

std::vector<fs::path> dataFolders() {
  std::vector<fs::path> folders{dataHome()};
  const char* given = std::getenv("XDG_DATA_DIRS");
  std::string_view rest = given && *given != '\0' ? given : "/usr/local/share:/usr/share";
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    if (rest.starts_with('/'))
      folders.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  // Behind those of the environment, which mostly names them already; doubles are dropped by the caller.
  folders.push_back(dataHome() / "flatpak/exports/share");
  folders.emplace_back("/var/lib/flatpak/exports/share");
  folders.emplace_back("/var/lib/snapd/desktop");
  return folders;
}

} // namespace

InstallationPlaces InstallationPlaces::ofThisProcess() {
  InstallationPlaces places;
  places.path = programPath();
  for (const fs::path& data : dataFolders()) {
    fs::path folder = (data / "applications").lexically_normal();
    if (std::ranges::find(places.applicationFolders, folder) == places.applicationFolders.end())
      places.applicationFolders.push_back(std::move(folder));
  }
  return places;
}

std::vector<const BrowserFacts*> findInstalledBrowsers(const InstallationPlaces& places) {
  std::vector<FileDescriptor> folders;
  for (const fs::path& folder : places.applicationFolders) {
    // Kept for all ids; O_PATH, as nothing is read from the folder itself.
    folders.emplace_back(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folders.back().isOpen() && isShortage(errno))
      throw FileFailure("read", folder, errno);
  }
  std::vector<const BrowserFacts*> browsers;
  for (const BrowserFacts& facts : browserTable) {
    bool isInstalled = findExecutable(facts, places.path).has_value();
    for (const std::string_view id : facts.desktopEntries) // all of them, so that each damaged one is logged
      isInstalled |= hasEntry(id, folders, places.path);
    if (isInstalled)
      browsers.push_back(&facts);
  }
  return browsers;
}

} // namespace tabwright::platform
