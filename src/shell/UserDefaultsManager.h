#pragma once

#include "actions/ActionServices.h"
#include "actions/WindowNames.h"
#include "engine/BrowserVersionStore.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "shell/DefaultsKeys.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace tabwright::shell {

/// The operations on the settings that are more than reading or writing one key; also what actions and scripts leave
/// behind. Each is one read-change-write step that no other interrupts, in this process or another.
///
/// Safe to use from any thread. Nothing throws and nothing is reported but to the log, see `platform::UserDefaults`.
/// The functions that actions and scripts call return without waiting for the disk. `store` and `keys` outlive this.
class UserDefaultsManager final : public actions::CallCounter,
                                  public actions::WindowNames,
                                  public engine::BrowserVersionStore {
public:
  UserDefaultsManager(platform::UserDefaults& store, const DefaultsKeys& keys) : store_(store), keys_(keys) {}

  /// Before a new trial of all browsers: no access granted, every status `unknown`. Versions stay, and a supported
  /// browser without an entry gets none.
  void resetBrowserStates();
  /// Sets the status of the browser's entry; without one nothing happens.
  void setBrowserStatus(std::string_view id, AssistiveAccessStatus status);
  /// Stores whether each entry's status is `granted` or `appNotInstalled`; no entries give true.
  void recomputeAssistiveAccessGranted();

  /// Sets the version of the browser's entry; without one nothing happens.
  void setBrowserVersion(std::string_view id, std::string_view version) override;
  /// The known versions behind the capitals of the browsers' names: "C 131.0, GC 130.0". May be empty.
  [[nodiscard]] std::string browserVersionList() const;

  /// Stores the time as that of the first launch, if none is stored.
  void recordFirstLaunch(const platform::Clock& clock);

  /// Adds 1 to `actionsCallCount`.
  void countCall() override;

  // Names of windows of Safari.
  void set(const std::string& fullID, const std::string& name) override;
  [[nodiscard]] std::map<std::string, std::string> names() const override;
  void prune(const std::set<std::string>& fullIDs) override { pruneWindowNames(fullIDs); }
  /// Forgets the names of all windows but these; writes nothing when there are no others.
  void pruneWindowNames(const std::set<std::string>& currentWindows);

private:
  platform::UserDefaults& store_;
  const DefaultsKeys& keys_;
};

} // namespace tabwright::shell
