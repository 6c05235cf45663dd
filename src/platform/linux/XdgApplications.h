#pragma once

#include "platform/InstalledApplications.h"
#include "platform/Mutex.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/InstalledBrowsers.h"
#include "platform/linux/RunningBrowsers.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tabwright::platform {

/// The applications of desktop entries (Desktop Entry Specification 1.5). The entries are read when they are first
/// needed, some 30 µs each, and again when a folder of theirs has changed. Only the times of folders are looked at: a
/// file that is rewritten in its place isn't noticed. Hidden entries, damaged ones and those whose TryExec is missing
/// aren't applications; one that its entry only keeps out of menus is.
class XdgApplications final : public InstalledApplications {
public:
  /// Reads nothing yet. `running` tells the program of a window's process.
  explicit XdgApplications(InstallationPlaces places = InstallationPlaces::ofThisProcess(),
                           RunningBrowsers running = RunningBrowsers());

  [[nodiscard]] std::optional<InstalledApplication> find(std::string_view id) override;
  [[nodiscard]] std::optional<InstalledApplication> applicationOf(const ClientWindow& window) override;
  /// Programs that run in a terminal are refused with `cannotStart`.
  void start(const InstalledApplication& application) override;

private:
  /// An entry of an application that is there. Its id has dashes in place of the borders of subfolders, without
  /// ".desktop".
  struct Entry {
    std::string id;
    DesktopEntry entry;
  };
  /// A folder as it was when it was read; a missing one has a time of its own, so that its coming is noticed.
  struct Folder {
    std::filesystem::path path;
    std::filesystem::file_time_type changed;
  };

  /// All entries that are there, those of the most important folder first. The lock is held while they are used.
  const std::vector<Entry>& entries() REQUIRES(mutex_);
  /// The entry of an id, whatever its case; null when there is none. Valid until the entries are read again.
  [[nodiscard]] const Entry* findEntry(std::string_view id) REQUIRES(mutex_);
  /// Adds the entries of a folder and those below it, but for ids in `seen`, to which it adds its own.
  void readFolder(const std::filesystem::path& folder, std::vector<std::string>& seen) REQUIRES(mutex_);

  /// Fixed: places that the environment names later aren't looked at.
  const InstallationPlaces places_;
  const RunningBrowsers running_;
  Mutex mutex_;
  /// The most important folder's first; hidden and shadowed ones aren't among them.
  std::vector<Entry> entries_ GUARDED_BY(mutex_);
  std::vector<Folder> folders_ GUARDED_BY(mutex_); ///< those read, with their subfolders
};

} // namespace tabwright::platform
