#pragma once

#include "platform/UserDefaults.h"

#include <chrono>
#include <filesystem>
#include <memory>

namespace tabwright::platform {

/// `tabwright/settings.plist` in the XDG configuration home.
[[nodiscard]] std::filesystem::path defaultSettingsFile();

/// The place of the settings, and how long a writer waits for the others.
struct LinuxUserDefaultsOptions {
  std::filesystem::path file = defaultSettingsFile();
  /// After that a change is given up for now: another process holds the lock and is stopped, or hangs. As long as that
  /// lasts later changes don't wait at all.
  std::chrono::nanoseconds lockWait = std::chrono::seconds(5);
};

/// The settings in a property list in XML, which plain tools and people read, shared by any number of processes.
///
/// - Killing a process at any instant leaves the state before or after one of its updates.
/// - Reading costs a look at the file's status, and a read of the file only after a change.
/// - A file that isn't a property list, or is far beyond any real one (4 MB, 1,000 arrays and dictionaries), is renamed
///   by the next update, which is logged. Until then, and after it, defaults hold. A value of another type than its
///   key's is read as the default; the update that replaces it keeps a copy of the file in the same way.
/// - Entries of names that nobody uses are kept.
/// - When the file can't be read or written, or the lock times out, that is logged once, and the change holds in this
///   process; it is written before the next change that can be. Of more than 1,000 such changes the oldest are dropped,
///   which is logged.
///
/// Observers are notified of changes by other processes through inotify(7), as long as the folder isn't replaced; where
/// the system refuses that, which is logged, they are notified of this process's only. The first `observe` or
/// `updateSoon` starts the one thread of the store; so fork only before. Destruction writes what `updateSoon` has left
/// to write.
class LinuxUserDefaults final : public UserDefaults {
public:
  /// Reads no setting yet: an unusable place shows with the first call.
  explicit LinuxUserDefaults(const LinuxUserDefaultsOptions& options = {});
  /// Nobody uses the store any more by then. Observations may outlive it.
  ~LinuxUserDefaults() override;
  LinuxUserDefaults(const LinuxUserDefaults&) = delete;
  LinuxUserDefaults& operator=(const LinuxUserDefaults&) = delete;

  [[nodiscard]] std::optional<DefaultsValue> find(const std::string& name) const override;
  void update(DefaultsUpdate change) override;
  void updateSoon(DefaultsUpdate change) override;
  [[nodiscard]] DefaultsObservation observe(const std::string& name, std::function<void()> callback) override;

private:
  /// The file, the locks, the changes on their way and the thread.
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

} // namespace tabwright::platform
