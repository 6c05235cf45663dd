#pragma once

#include <string>

namespace tabwright::client {

/// The folder in which the sockets of this user's hosts lie: `tabwright` in $XDG_RUNTIME_DIR, else in /run/user/UID,
/// else /tmp/tabwright-UID. It is open to its owner alone, and no symbolic link.
///
/// Names in it are reached through its descriptor, so that it is the folder that was checked, and that its path may be
/// longer than a socket's address.
class RuntimeFolder {
public:
  /// Finds the folder, or makes it with mode 0700. Throws HostUnavailable when it can't be made, belongs to somebody
  /// else or is open to others.
  RuntimeFolder();
  ~RuntimeFolder();
  RuntimeFolder(const RuntimeFolder&) = delete;
  RuntimeFolder& operator=(const RuntimeFolder&) = delete;

  [[nodiscard]] int descriptor() const noexcept { return descriptor_; }
  /// Where a name in the folder is for everyone: as it is shown and handed on.
  [[nodiscard]] std::string pathOf(const std::string& name) const { return path_ + "/" + name; }
  /// A short path to the same name, valid in this process as long as this object lives.
  [[nodiscard]] std::string shortPathOf(const std::string& name) const;

private:
  std::string path_;
  int descriptor_ = -1;
};

} // namespace tabwright::client
