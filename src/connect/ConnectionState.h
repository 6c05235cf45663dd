#pragma once

#include "connect/BrowserProfiles.h"
#include "connect/HelperInstallation.h"
#include "connect/HelperParts.h"
#include "connect/UserDataDirectory.h"
#include "platform/CallLimits.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/driver/HelperRoad.h"
#include "scripting/driver/RelayConnection.h"

#include <optional>
#include <string>
#include <vector>

namespace tabwright::connect {

/// A profile, and the helper in it where it is reached now.
struct ProfileState {
  /// Without folder and name where the helper is reached, but which profile it is in isn't known yet.
  BrowserProfile profile;
  std::optional<scripting::HelperDescription> helper;
  scripting::RelayPlace relay; ///< of the helper that is reached
};

/// A user data directory as it is at the moment.
struct ConnectionState {
  UserDataDirectory directory;
  HelperFiles files = HelperFiles::absent;
  std::optional<platform::RunningBrowser> browser; ///< that runs with it
  /// It was started after the helper's files were there, so it has taken the helper in, unless something forbids that.
  bool hasSeenFiles = false;
  std::vector<ProfileState> profiles;
  std::string complaint; ///< a helper is there that can't be spoken to: why, without a full stop; else empty

  /// True when a helper is reached in one of the profiles.
  [[nodiscard]] bool hasHelper() const;
  /// True when one of them may also run scripts in pages: the browser can be driven in full.
  [[nodiscard]] bool isConnected() const;
};

/// Looks at the files, the processes and the relays, and asks each helper, who have two seconds each. Changes nothing,
/// opens no session; a browser that can't be reached is an answer, no failure. Blocks. Throws FileFailure when this
/// process has run short.
[[nodiscard]] std::vector<ConnectionState> lookAtConnections(const std::vector<UserDataDirectory>& directories,
                                                             const HelperParts& parts,
                                                             const platform::CallLimits& limits);

/// Opens a page in a new tab of the profile, by its helper, in two seconds at most. False where there is no helper, or
/// it can't: a browser may be without windows.
[[nodiscard]] bool openPage(const ConnectionState& state, const ProfileState& profile, const std::string& address,
                            const platform::CallLimits& limits);

/// Ends the relays of the browser that runs with a directory, so that its helper is no longer reached. Where the
/// relay's file is gone, the browser starts no other. False when no browser runs with it.
bool endRelays(const std::filesystem::path& directory);

} // namespace tabwright::connect
