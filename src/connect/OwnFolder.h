#pragma once

#include "platform/linux/FileDescriptor.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::connect {

/// A folder of this user's, in which files are written and removed by the open folder, so that nobody's link leads
/// elsewhere meanwhile. All functions throw ConnectFault: `foreign`, `linked`, `noFolder`, or `unwritable` with the
/// system's reason and what to do about it.
class OwnFolder {
public:
  /// Opens the folder at `path`, which may be reached through links of the user's: some keep a browser's folder on
  /// another disk.
  [[nodiscard]] static OwnFolder open(const std::filesystem::path& path);

  /// Opens a folder in this one, which must not be a link; nothing where there is none.
  [[nodiscard]] std::optional<OwnFolder> findFolder(const std::string& name) const;
  /// Likewise, and makes one, open to its owner alone, where there is none.
  [[nodiscard]] OwnFolder ensureFolder(const std::string& name) const;

  /// The content of a file; nothing where none can be read.
  [[nodiscard]] std::optional<std::string> read(const std::string& name) const;
  /// Writes a file whole or not at all, in place of what has its name; a link of that name is replaced, not followed.
  /// False, and nothing is touched, when it has this content already.
  bool write(const std::string& name, std::string_view content) const;
  /// Removes a file or a link, and what a killed `write` of it has left. False when there was none.
  bool remove(const std::string& name) const;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
  OwnFolder(std::filesystem::path path, platform::FileDescriptor descriptor);

  std::filesystem::path path_;
  platform::FileDescriptor descriptor_;
};

} // namespace tabwright::connect
