#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace tabwright::session {

/// A folder that can't be used, or must not be. The sentence names it and says why, without a full stop.
class FolderRefused final : public std::runtime_error {
public:
  FolderRefused(const std::string& path, const std::string& reason, int errorNumber)
      : std::runtime_error("The folder " + path + " " + reason), errorNumber_(errorNumber) {}

  /// An errno value; EPERM for a folder that others could change.
  [[nodiscard]] int errorNumber() const noexcept { return errorNumber_; }

private:
  int errorNumber_;
};

/// A folder in which nobody but this user (and root) can put, exchange or remove anything: it is the user's own, no
/// symbolic link, and not writable by others. Sockets, and programs that are about to be run, lie in such folders only.
///
/// It stays open as long as this lives, so that names in it can be reached through the very folder that was checked.
class TrustedFolder {
public:
  /// Opens the folder, or makes it with mode 0700 in a parent that must be there. Throws FolderRefused when it can't be
  /// made, opened or written to, or isn't to be trusted. The parent is the caller's matter.
  explicit TrustedFolder(std::string path);
  TrustedFolder(TrustedFolder&& other) noexcept;
  TrustedFolder& operator=(TrustedFolder&&) = delete;
  ~TrustedFolder();

  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

private:
  std::string path_;
  int descriptor_ = -1;
};

/// XDG_RUNTIME_DIR, where it names a folder that is this user's own and not writable by others. It lives as long as the
/// session, usually in memory.
[[nodiscard]] std::optional<std::string> sessionFolder();

/// The same for any folder, following links.
[[nodiscard]] bool isOwnFolder(const std::string& path);

/// The path of the folder for what a session of this user's needs: `tabwright` in the session's folder, else in
/// /run/user/UID, else /tmp/tabwright-UID. It needn't be there, and isn't to be trusted before a TrustedFolder of it is
/// made.
[[nodiscard]] std::string runtimePath();

/// False when the file system of an existing path has less than `bytes` left, or room for no further file. An
/// unknown state counts as room.
[[nodiscard]] bool hasRoom(const std::string& path, std::uintmax_t bytes);

} // namespace tabwright::session
