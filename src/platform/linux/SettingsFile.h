#pragma once

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/FileLock.h"
#include "platform/linux/PropertyListDocument.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <sys/stat.h>

namespace tabwright::platform {

/// The property list file of the settings and what protects it. No state but its paths; safe to use from any thread.
///
/// A killed writer leaves the old file or the new one: the new one is written beside it under the ending ".new",
/// synced, and renamed over it, and the folder is synced. A ".new" file that a killed writer left is replaced by the
/// next one.
///
///     const FileLock lock = file.lock(std::chrono::seconds(5));
///     const auto old = file.load(nullptr);
///     PropertyListDocument document = old->document;
///     document.set(name, value);
///     const auto now = file.replace(*old, std::move(document), SettingsFile::OldFile::replace);
class SettingsFile {
public:
  /// The content of the file at one moment. The open descriptor keeps the system from giving the file's inode to
  /// another, so that a change is never missed. Immutable once it is shared.
  struct Snapshot {
    enum class Kind { missing, damaged, readable };
    Kind kind = Kind::missing;
    PropertyListDocument document; ///< empty unless `readable`
    FileDescriptor descriptor;     ///< open unless `missing`
    struct stat facts{};           ///< unless `missing`
  };
  using SnapshotPointer = std::shared_ptr<const Snapshot>;

  /// A link at `file` is followed now, so that writing replaces the file that it leads to.
  explicit SettingsFile(const std::filesystem::path& file);

  [[nodiscard]] const std::filesystem::path& path() const noexcept { return file_; }

  /// The file as it is now: `previous` again when nothing has changed since. `previous` may be null. A damaged file is
  /// logged. Throws `FileFailure` when a file is there and can't be read. One look at the file's status when nothing
  /// has changed.
  [[nodiscard]] SnapshotPointer load(const SnapshotPointer& previous) const;

  /// Makes the folder where it is missing and takes the lock of all writers. Throws as `FileLock` does.
  [[nodiscard]] FileLock lock(std::chrono::nanoseconds wait) const;

  /// `keepAside` is for a state that a reader of the old file would miss: a value of another type is about to go.
  enum class OldFile { replace, keepAside };
  /// Writes a new state in place of `old`, durably. The caller holds the lock. A damaged file is always kept aside:
  /// under its name with ".damaged-1", which is logged; those set aside before get the next number, and the fourth
  /// goes. Throws `FileFailure`; the old state is there then.
  [[nodiscard]] SnapshotPointer replace(const Snapshot& old, PropertyListDocument document, OldFile oldFile) const;

private:
  /// Sets the file aside under its next name. Throws `FileFailure`.
  void keepAside() const;

  std::filesystem::path file_;
};

} // namespace tabwright::platform
