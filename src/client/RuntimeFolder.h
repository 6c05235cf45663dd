#pragma once

#include "session/TrustedFolder.h"

#include <string>

namespace tabwright::client {

/// The folder in which the sockets of this user's hosts lie: `tabwright` in $XDG_RUNTIME_DIR, else in /run/user/UID,
/// else /tmp/tabwright-UID: in the first that is there and that nobody else can write to.
///
/// Names in it are reached through its descriptor, so that it is the folder that was checked, and that its path may be
/// longer than a socket's address.
class RuntimeFolder {
public:
  /// Finds the folder, or makes it. Throws HostUnavailable, when it can't be used, or isn't to be
  /// trusted.
  RuntimeFolder();

  [[nodiscard]] int descriptor() const noexcept { return folder_.descriptor(); }
  /// The path of a name in the folder for everyone: as it is shown and handed on.
  [[nodiscard]] std::string pathOf(const std::string& name) const { return folder_.path() + "/" + name; }
  /// A short path to the same name, valid in this process as long as this object lives.
  [[nodiscard]] std::string shortPathOf(const std::string& name) const;

private:
  session::TrustedFolder folder_;
};

} // namespace tabwright::client
