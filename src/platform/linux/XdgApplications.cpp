// All entries are kept in one list in the order of the folders, so that the first that fits is the one that counts. An
// entry of a folder hides those of its id further down, also when it only says that the application isn't there. The
// times of the folders tell that the list still holds: they change with every file that comes, goes or is replaced.
#include "platform/linux/XdgApplications.h"

#include "platform/AsciiCase.h"
#include "platform/DesktopFault.h"
#include "platform/StringCatalogue.h"
#include "platform/linux/BrowserExecutable.h"
#include "platform/linux/DetachedProcess.h"
#include "platform/linux/FileDescriptor.h"

#include <fmt/core.h>

#include <algorithm>
#include <fcntl.h>
#include <system_error>
#include <utility>

namespace tabwright::platform {

namespace fs = std::filesystem;

namespace {

std::string textOf(const fs::path& path) {
  // Without waiting: what lies there may be a pipe.
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  return file.readAll().value_or("");
}

/// A time of its own for a folder that isn't there.
fs::file_time_type timeOf(const fs::path& folder) {
  std::error_code error;
  const auto changed = fs::last_write_time(folder, error);
  return error ? fs::file_time_type::min() : changed;
}

bool sameName(std::string_view left, std::string_view right) {
  return !left.empty() && equalIgnoringCase(left, right);
}

InstalledApplication described(const std::string& id, const DesktopEntry& entry) {
  return {id, entry.localName};
}

} // namespace

XdgApplications::XdgApplications(InstallationPlaces places, RunningBrowsers running)
    : places_(std::move(places)), running_(std::move(running)) {}

void XdgApplications::readFolder(const fs::path& folder, std::vector<std::string>& seen) {
  folders_.push_back({folder, timeOf(folder)});
  const std::vector<std::string> languages = languagesOfEnvironment();
  std::error_code error;
  fs::recursive_directory_iterator all(folder, fs::directory_options::skip_permission_denied, error);
  for (; !error && all != fs::recursive_directory_iterator(); all.increment(error)) {
    std::error_code ignored;
    if (all->is_directory(ignored))
      folders_.push_back({all->path(), timeOf(all->path())});
    if (all->path().extension() != ".desktop")
      continue;
    std::string id = all->path().lexically_relative(folder).replace_extension().string();
    // The desktop file ID of the Desktop Entry Specification.
    std::ranges::replace(id, '/', '-');
    std::optional<DesktopEntry> entry = parseDesktopEntry(textOf(all->path()), languages);
    // A damaged entry hides nothing.
    if (!entry || std::ranges::find(seen, id) != seen.end())
      continue;
    seen.push_back(id);
    if (!entry->isHidden && entry->type == "Application" &&
        (entry->tryExec.empty() || isProgram(entry->tryExec, places_.path)))
      entries_.push_back({std::move(id), std::move(*entry)});
  }
}

const std::vector<XdgApplications::Entry>& XdgApplications::entries() {
  const bool isCurrent = !folders_.empty() && std::ranges::all_of(folders_, [](const Folder& folder) {
    return timeOf(folder.path) == folder.changed;
  });
  if (!isCurrent) {
    entries_.clear();
    folders_.clear();
    std::vector<std::string> seen;
    for (const fs::path& folder : places_.applicationFolders)
      readFolder(folder, seen);
  }
  return entries_;
}

const XdgApplications::Entry* XdgApplications::findEntry(std::string_view id) {
  const std::vector<Entry>& all = entries();
  const auto found = std::ranges::find_if(all, [&](const Entry& each) { return sameName(each.id, id); });
  return found == all.end() ? nullptr : &*found;
}

std::optional<InstalledApplication> XdgApplications::find(std::string_view id) {
  const MutexLock lock(mutex_);
  const Entry* found = findEntry(id);
  const auto isShortName = [&](const Entry& each) { return sameName(shortName(each.id), id); };
  if (found == nullptr && std::ranges::count_if(entries_, isShortName) == 1)
    found = &*std::ranges::find_if(entries_, isShortName);
  return found != nullptr ? std::optional(described(found->id, found->entry)) : std::nullopt;
}

std::optional<InstalledApplication> XdgApplications::applicationOf(const ClientWindow& window) {
  // Before the lock, as it asks the system.
  const fs::path program = window.pid != 0 ? running_.programOf(window.pid) : fs::path();
  const MutexLock lock(mutex_);
  const std::vector<Entry>& all = entries();
  const auto isOfClass = [&](std::string_view text) {
    return sameName(text, window.windowClass) || sameName(text, window.instance);
  };
  const auto runs = [&](const DesktopEntry& entry) {
    const auto words = commandLineOf(entry);
    // By the file's name alone: a program may be started through a link.
    return words && !program.empty() && fs::path(words->front()).filename() == program.filename();
  };
  const auto first = [&](auto fits) { return std::ranges::find_if(all, fits); };
  auto found = first([&](const Entry& each) { return each.id == window.applicationID; });
  if (found == all.end())
    found = first([&](const Entry& each) { return isOfClass(each.entry.windowClass); });
  if (found == all.end())
    found = first([&](const Entry& each) { return isOfClass(each.id); });
  if (found == all.end())
    found = first([&](const Entry& each) { return runs(each.entry); });
  return found == all.end() ? std::nullopt : std::optional(described(found->id, found->entry));
}

void XdgApplications::start(const InstalledApplication& application) {
  std::optional<std::vector<std::string>> words;
  std::string folder;
  const auto refuse = [&](std::string_view why) {
    return failure(DesktopFault::cannotStart, fmt::format("{}: {}", application.name, why));
  };
  {
    const MutexLock lock(mutex_);
    const Entry* found = findEntry(application.id);
    if (found == nullptr)
      throw refuse("it is no longer installed");
    // It would need a terminal around it, and none is looked for.
    if (found->entry.isInTerminal)
      throw refuse("it runs in a terminal");
    words = commandLineOf(found->entry);
    folder = found->entry.workingFolder;
  }
  if (!words)
    throw refuse("its desktop entry has no command that can be read");
  if (const int error = startDetached(*words, folder); error != 0)
    throw refuse(fmt::format("{}: {}", words->front(), std::generic_category().message(error)));
}

} // namespace tabwright::platform
