#pragma once

#include "platform/BrowserTable.h"
#include "platform/linux/RunningBrowsers.h"

#include <filesystem>
#include <vector>

namespace tabwright::connect {

/// The package that a browser comes in. From a sandbox it can't start a program of the system's, such as the relay.
enum class Sandbox { none, flatpak, snap };

/// A folder in which a browser keeps all of its profiles.
struct UserDataDirectory {
  const platform::BrowserFacts* facts = nullptr;
  std::filesystem::path path; ///< absolute; need not be there yet
  Sandbox sandbox = Sandbox::none;
};

/// The places in which they are looked for. Tests give folders of their own.
struct UserDataPlaces {
  std::filesystem::path home;
  std::filesystem::path configuration; ///< XDG_CONFIG_HOME or what stands for it
  /// Below it lie the profiles of browsers that this program starts. They are driven by their port and left out.
  std::filesystem::path ownProfiles;
  std::vector<const platform::BrowserFacts*> installed;
  std::vector<platform::RunningBrowser> running; ///< those of other users are left out

  /// Those of this process. Throws FileFailure when the process has run short.
  [[nodiscard]] static UserDataPlaces ofThisProcess();
};

/// The user data directories of one browser, or of all for null, in the table's order: the default ones that are there,
/// those that running browsers were given, and, for an installed browser that has none yet, the one that its first
/// start will make. Nothing of a browser that is neither installed nor running. Each directory comes once.
[[nodiscard]] std::vector<UserDataDirectory> findUserDataDirectories(const platform::BrowserFacts* wanted,
                                                                     const UserDataPlaces& places);

/// The default ones that are there, of all browsers, installed or not: what an earlier installation may have been in.
[[nodiscard]] std::vector<UserDataDirectory> findDefaultDirectories(const UserDataPlaces& places);

} // namespace tabwright::connect
