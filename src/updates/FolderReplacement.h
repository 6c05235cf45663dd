#pragma once

#include "platform/linux/FileDescriptor.h"

#include <filesystem>
#include <functional>

namespace tabwright::updates {

/// Renames a path; yields 0, or the errno of what failed.
using RenamePath = std::function<int(const std::filesystem::path& from, const std::filesystem::path& to)>;
[[nodiscard]] int renamePath(const std::filesystem::path& from, const std::filesystem::path& to);

/// A folder in the making beside the one that it will replace, so on the same file system. It is removed in the end,
/// unless it has taken its place.
///
///     FolderReplacement fresh("/home/a/tabwright");   // makes /home/a/tabwright.new-Xy12Ab
///     … put files into fresh.folder() …
///     fresh.takePlace();                              // the old folder is /home/a/tabwright.old now
///
/// While it lives no other process can make one for the same folder.
class FolderReplacement {
public:
  /// Removes what a killed process has left. Throws `UpdateFault::busy`, or `FileFailure`.
  explicit FolderReplacement(std::filesystem::path replaced, RenamePath rename = renamePath);
  ~FolderReplacement();
  FolderReplacement(const FolderReplacement&) = delete;
  FolderReplacement& operator=(const FolderReplacement&) = delete;

  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

  /// Writes everything to the disk, then renames the old folder and the new one. What an earlier update left under the
  /// old one's name is removed, but only if it is such a folder itself. Throws `FileFailure` when a step fails; then
  /// the old folder is in its place.
  void takePlace();

private:
  void requireOwnLeftover(const std::filesystem::path& old) const;

  const std::filesystem::path replaced_;
  const RenamePath rename_;
  platform::FileDescriptor lock_;
  std::filesystem::path folder_; ///< empty once it has taken its place
};

} // namespace tabwright::updates
