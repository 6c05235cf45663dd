#pragma once

#include "platform/InstalledApplications.h"
#include "platform/WindowSystem.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/systemevents/Desktop.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace tabwright::scripting {

/// The ways to a process's names.
struct ProcessNames {
  std::function<std::filesystem::path(pid_t)> programOf; ///< the path of its program; empty when it is unknown
  /// The application that a window belongs to; empty: none is known.
  std::function<std::optional<platform::InstalledApplication>(const platform::ClientWindow&)> applicationOf{};
};

/// The process that a window belongs to. That is the one it names, unless that is a sandboxed browser's number in its
/// own namespace and the window is of that browser's class.
[[nodiscard]] pid_t processOfWindow(const platform::ClientWindow& window,
                                    const std::vector<platform::RunningBrowser>& browsers);

/// Lists the desktop's processes: those with windows in the order of their frontmost ones, then those with minimised
/// ones only, then the browsers that have none in the order given. The frontmost one comes first.
///
/// `windows` are front to back. Frontmost is the process of the active window. Without one the user is nowhere, and it
/// is the process of the first window in sight; where none is, as on an empty workspace, the first browser.
///
/// A browser has the names of its row in the table, another process those of its desktop entry, or else its program's.
[[nodiscard]] std::vector<DesktopProcess> desktopProcesses(const std::vector<platform::ClientWindow>& windows,
                                                           const std::vector<platform::RunningBrowser>& browsers,
                                                           const ProcessNames& names);

} // namespace tabwright::scripting
