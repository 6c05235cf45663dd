#pragma once

#include "platform/WindowSystem.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/systemevents/Desktop.h"

#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

namespace tabwright::scripting {

/// The path of a process's program; empty when it is unknown.
using ProgramOfProcess = std::function<std::filesystem::path(pid_t)>;

/// The process that a window belongs to. That is the one it names, unless that is a sandboxed browser's number in its
/// own namespace and the window is of that browser's class.
[[nodiscard]] pid_t processOfWindow(const platform::ClientWindow& window,
                                    const std::vector<platform::RunningBrowser>& browsers);

/// Lists the desktop's processes: those with windows in the order of their frontmost ones, then the browsers that have
/// none in the order given. The frontmost one comes first.
///
/// `windows` are front to back. Frontmost is the process of the active window. Without one the user is nowhere, and it
/// is the process of the first window that is shown; where nothing is shown, the first browser.
[[nodiscard]] std::vector<DesktopProcess> desktopProcesses(const std::vector<platform::ClientWindow>& windows,
                                                           const std::vector<platform::RunningBrowser>& browsers,
                                                           const ProgramOfProcess& programOf);

} // namespace tabwright::scripting
