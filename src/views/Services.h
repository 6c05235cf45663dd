#pragma once

#include "shell/Application.h"
#include "shell/Links.h"
#include "shell/Main.h"

#include <functional>
#include <string>
#include <vector>

namespace tabwright::views {

/// A browser as it stands on this system, in words for the user.
struct BrowserCondition {
  std::string name;          ///< such as "Chromium"
  std::string sentence;      ///< how well it can be driven, and what to do about it
  bool canBeStarted = false; ///< true where starting it anew would make it one that can be driven
  std::string id;
};

/// All that the setup shows of this system.
struct SystemCondition {
  std::vector<BrowserCondition> browsers; ///< those that are installed or run
  bool canReadControls = false;           ///< the desktop's accessibility bus answers
  std::string whyNot;                     ///< a sentence, where it doesn't
};

/// The things that windows are bound to. All of it outlives them. Functions are called on the main actor, and call back
/// there.
struct Services {
  shell::Application& application;
  shell::Main& main;
  shell::Endpoints endpoints;
  /// The wall time, in seconds since 2001-01-01 00:00:00 UTC.
  std::function<double()> now;
  /// Starts the trial of all browsers, or joins the one that runs; `done` comes at its end.
  std::function<void(std::function<void()> done)> requestBrowserPermissions;
  std::function<bool()> isRequestingPermissions;
  /// Looks at browsers and desktop; takes up to some seconds.
  std::function<void(std::function<void(SystemCondition)> done)> look;
  /// Starts a browser that takes commands; `done` gets a sentence, empty when all went well.
  std::function<void(const std::string& id, std::function<void(std::string)> done)> startBrowser;
  /// The names of the browsers that run now, joined as the user's language does it: "A, B, and C".
  std::function<std::string()> runningBrowsers;
  /// Checks for newer versions and shows the outcome.
  std::function<void()> checkForUpdates;
};

} // namespace tabwright::views
