#pragma once

#include "applescript/events/ApplicationDirectory.h"
#include "platform/BrowserTable.h"
#include "platform/Mutex.h"
#include "scripting/driver/BrowserDriver.h"
#include "scripting/systemevents/Desktop.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace tabwright::scripting {

/// The parts that the directory makes its applications of.
struct ScriptingServices {
  /// A driver for a browser; null when the browser isn't installed, or there is no way to it. Asked again until there
  /// is one, then kept.
  /// With the name of a profile it is the driver of that one; empty: of whichever the user is in.
  std::function<std::shared_ptr<BrowserDriver>(const platform::BrowserFacts&, const std::string& profile)> makeDriver;
  /// Starts a browser that `activate` finds not running; throws when it can't. Empty: such an `activate` is error −600.
  std::function<void(const platform::BrowserFacts&)> launch;
  std::shared_ptr<Desktop> desktop; ///< required
  /// This program as scripts address it, and what `activate` does to it; empty for nothing.
  std::string ownName = "Tabwright";
  std::string ownBundleIdentifier = "com.tabwright.tabwright";
  std::function<void()> activateSelf;
};

/// The applications that scripts can speak to: the supported browsers, System Events, this program, and whatever else
/// runs on the desktop. Ids and names are found in any case. Dictionaries are known for all browsers, installed or not;
/// a running application without one that is asked for by its id is given the Chromium family's, since the runtime
/// library speaks to its target in these words, be it only in handlers that are never called. A browser's profile is an
/// application of its own, by the browser's id or name with a slash and the profile's name behind it. Safe from several
/// threads.
///
///     ScriptingDirectory directory({.makeDriver = makeDriver, .desktop = desktop});
///     directory.findByID("org.chromium.Chromium"); // the same application each time
///     directory.findByName("Finder");              // null: nothing of this name runs
class ScriptingDirectory final : public applescript::ApplicationDirectory {
public:
  /// Connects to nothing and asks nobody: drivers are made when a script first speaks to their browser.
  explicit ScriptingDirectory(ScriptingServices services);

  /// Null for an id that is no browser's and that nothing running has. Looks at the desktop for ids that no table
  /// knows.
  [[nodiscard]] const applescript::Terminology* terminologyByID(std::string_view bundleIdentifier) const override;
  /// The same by name, but null for any other running application.
  [[nodiscard]] const applescript::Terminology* terminologyByName(std::string_view name) const override;
  /// Null for a browser that there is no driver for, and for any other application that doesn't run. System Events,
  /// this program and browsers are the same object each time; another application is made anew by each call.
  [[nodiscard]] std::shared_ptr<applescript::ScriptableApplication>
  findByID(std::string_view bundleIdentifier) override;
  [[nodiscard]] std::shared_ptr<applescript::ScriptableApplication> findByName(std::string_view name) override;

private:
  using NameOf = std::string DesktopProcess::*;
  [[nodiscard]] std::shared_ptr<applescript::ScriptableApplication> running(NameOf member, std::string_view text) const;
  /// A browser's application, made by the first call that gets a driver. Null without one.
  std::shared_ptr<applescript::ScriptableApplication> browser(const platform::BrowserFacts& facts,
                                                              std::string_view profile);

  ScriptingServices services_;
  std::shared_ptr<applescript::ScriptableApplication> systemEvents_;
  std::shared_ptr<applescript::ScriptableApplication> self_;
  platform::Mutex mutex_;
  std::map<std::pair<std::string_view, std::string>, std::shared_ptr<applescript::ScriptableApplication>>
      browsers_ GUARDED_BY(mutex_); ///< by id and profile, once made
};

} // namespace tabwright::scripting
