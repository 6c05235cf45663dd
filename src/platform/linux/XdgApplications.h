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
/// needed, some 30 µs each, and again when a folder of theirs has changed.
class XdgApplications final : public InstalledApplications {
public:
  explicit XdgApplications(InstallationPlaces places = InstallationPlaces::ofThisProcess(),
                           RunningBrowsers running = RunningBrowsers());

  [[nodiscard]] std::optional<InstalledApplication> find(std::string_view id) override;
  [[nodiscard]] std::optional<InstalledApplication> applicationOf(const ClientWindow& window) override;
  void start(const InstalledApplication& application) override;

private:
  struct Entry {
    std::string id;
    DesktopEntry entry;
  };
  struct Folder {
    std::filesystem::path path;
    std::filesystem::file_time_type changed;
  };

  /// All entries that are there, those of the most important folder first. The lock is held while they are used.
  const std::vector<Entry>& entries() REQUIRES(mutex_);
  [[nodiscard]] const Entry* findEntry(std::string_view id) REQUIRES(mutex_);
  void readFolder(const std::filesystem::path& folder, std::vector<std::string>& seen) REQUIRES(mutex_);

  const InstallationPlaces places_;
  const RunningBrowsers running_;
  Mutex mutex_;
  std::vector<Entry> entries_ GUARDED_BY(mutex_);
  std::vector<Folder> folders_ GUARDED_BY(mutex_); ///< those read, with their subfolders
};

} // namespace tabwright::platform
