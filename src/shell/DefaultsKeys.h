#pragma once

#include "platform/DefaultsKey.h"
#include "platform/UserDefaults.h"
#include "shell/BrowserState.h"

#include <cstdint>
#include <map>
#include <string>

namespace tabwright::shell {

/// Every browser that is supported, with nothing known of it.
[[nodiscard]] BrowserStates unknownBrowserStates();

/// All that outlives the process, as one object per store. The names in the store are fixed for good, since stored data
/// hangs on them; they carry no meaning. None of these is a preference of the user.
///
/// Safe to use from any thread.
struct DefaultsKeys {
  /// `store` outlives this. Each key has the value that counts while none is stored.
  explicit DefaultsKeys(platform::UserDefaults& store)
      : actionsCallCount(store, "c41d07ab", 0), firstLaunchTimestamp(store, "7e52a9f0", 0),
        lastReportedRelease(store, "48ae42df", ""), seenWhatsNewWithChecksum(store, "6055e27a", ""),
        browserStates(store, "e09e6ffa", unknownBrowserStates()), isAssistiveAccessGranted(store, "645a0a64", false),
        windowNames(store, "97db2995", {}) {}

  platform::DefaultsKey<std::int64_t> actionsCallCount;        ///< runs of actions since the first launch
  platform::DefaultsKey<double> firstLaunchTimestamp;          ///< seconds since 2001-01-01 00:00:00 UTC; 0: none yet
  platform::DefaultsKey<std::string> lastReportedRelease;      ///< the last release whose launch was reported
  platform::DefaultsKey<std::string> seenWhatsNewWithChecksum; ///< which "What's New" was marked as read
  platform::DefaultsKey<BrowserStates> browserStates;
  /// True when the setup found each browser granted or not installed.
  platform::DefaultsKey<bool> isAssistiveAccessGranted;
  /// From the full id of a window of Safari to the name that an action gave it.
  platform::DefaultsKey<std::map<std::string, std::string>> windowNames;
};

} // namespace tabwright::shell
