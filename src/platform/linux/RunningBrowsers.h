#pragma once

#include "platform/BrowserTable.h"

#include <cstdint>
#include <filesystem>
#include <sys/types.h>
#include <vector>

namespace tabwright::platform {

/// One browser process that serves a profile: the main one, not those of its pages, its graphics or its services.
struct RunningBrowser {
  pid_t process = 0;
  uid_t owner = 0;
  std::uint64_t startTime = 0; ///< clock ticks after boot; larger is later
  std::filesystem::path
      profileDirectory; ///< its user data directory, absolute; may be missing for a moment after the start
  bool isHeadless = false;
};

/// Finds the browsers that run now, in the process file system (proc(5)).
///
/// A process counts when the base name of its executable is one of the browser's, it has no `--type=` switch (Chromium
/// gives one to each of its helper processes), and it belongs to this user, or this user is root. Its profile is named
/// by
/// `--user-data-dir`, else it is the default directory below that process' own home.
///
///     RunningBrowsers browsers;
///     for (const RunningBrowser& browser : browsers.find(*findBrowser("chromium"))) ...
///
/// Stateless: safe to use from any thread. Processes that come or go during the search may be missed.
class RunningBrowsers {
public:
  /// `processes` is where the process file system is mounted; tests give a directory of their own.
  explicit RunningBrowsers(std::filesystem::path processes = "/proc");

  /// The running browsers of one kind, the last started first. Empty where none runs, or the browser has no face here.
  [[nodiscard]] std::vector<RunningBrowser> find(const BrowserFacts& facts) const;

private:
  std::filesystem::path processes_;
};

} // namespace tabwright::platform
