#pragma once

#include "shell/Application.h"
#include "shell/Links.h"
#include "shell/Main.h"

#include <functional>
#include <string>
#include <vector>

namespace tabwright::views {

/// The one thing that would mend a browser, where there is one.
enum class Mending {
  none,
  start,       ///< start it with the profile that this program keeps for it
  install,     ///< install the helper in it
  openSwitches ///< open the page in it that has the helper's switches
};

/// A browser as it stands on this system, in words for the user.
struct BrowserCondition {
  std::string name;                 ///< such as "Chromium"
  std::string sentence;             ///< how well it can be driven, and what to do about it
  std::vector<std::string> details; ///< by each road to it: scripts in pages, private windows
  Mending mending = Mending::none;
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
  /// Mends a browser; `done` gets a sentence: what is left to do, or what went wrong. Empty when nothing is.
  std::function<void(const std::string& id, Mending mending, std::function<void(std::string)> done)> mend;
  /// The names of the browsers that run now, joined as the user's language does it: "A, B, and C".
  std::function<std::string()> runningBrowsers;
  /// Checks for newer versions and shows the outcome.
  std::function<void()> checkForUpdates;
};

} // namespace tabwright::views
