#pragma once

#include "platform/BrowserTable.h"

#include <cstdint>
#include <filesystem>
#include <sys/types.h>
#include <vector>

namespace tabwright::platform {

/// One browser process that serves a profile: the main one, not those of its pages, its graphics or its services.
struct RunningBrowser {
  const BrowserFacts* facts = nullptr; ///< its row of the table
  pid_t process = 0;
  /// Its number in its own namespace, which differs from `process` in a sandbox such as Flatpak's (pid_namespaces(7)).
  /// Its lock files and its windows name this one.
  pid_t innerProcess = 0;
  uid_t owner = 0;
  std::uint64_t startTime = 0; ///< clock ticks after boot; larger is later
  /// Its user data directory, absolute; may be missing for a moment after the start.
  std::filesystem::path profileDirectory;
  bool isHeadless = false;
  /// True when its place among others of its kind is known from the order of windows. `RunningBrowsers` doesn't know
  /// it.
  bool isPlacedByWindows = false;
};

/// Finds the browsers that run now, in the process file system (proc(5)).
///
/// A process counts when `findBrowserOfProgram` knows its executable, it has no `--type=` switch (Chromium gives one to
/// each of its helper processes), and it belongs to this user, or this user is root. Its profile is named by
/// `--user-data-dir`, else it is the default directory below that process' own home.
///
///     RunningBrowsers browsers;
///     for (const RunningBrowser& browser : browsers.find(*findBrowser("chromium"))) ...
///
/// Each call reads the process table anew, at one system call for each process that is no browser; who asks for several
/// kinds asks for all. Stateless: safe to use from any thread. Processes that come or go during the search may be
/// missed.
class RunningBrowsers {
public:
  /// `processes` is where the process file system is mounted; tests give a directory of their own.
  explicit RunningBrowsers(std::filesystem::path processes = "/proc");

  /// The running browsers of one kind, the last started first. Empty where none runs, or the browser has no face here.
  [[nodiscard]] std::vector<RunningBrowser> find(const BrowserFacts& facts) const;
  /// Those of all kinds, the last started first.
  [[nodiscard]] std::vector<RunningBrowser> findAll() const;
  /// Path of the executable of a process; empty for one that is gone, or another user's.
  [[nodiscard]] std::filesystem::path programOf(pid_t process) const;

private:
  std::filesystem::path processes_;
};

} // namespace tabwright::platform
