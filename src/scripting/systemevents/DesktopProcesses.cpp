// Windows are gathered by process, in the order in which each process is met first. That order is the order in which
// applications were last used; those whose windows are all minimised were left.
#include "scripting/systemevents/DesktopProcesses.h"

#include "platform/AsciiCase.h"
#include "platform/BrowserTable.h"
#include "scripting/model/Comparison.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>

namespace tabwright::scripting {

using platform::BrowserFacts;
using platform::ClientWindow;
using platform::RunningBrowser;

namespace {

/// `window` is one of the process's; null for a browser without any.
DesktopProcess describe(pid_t pid, const ClientWindow* window, const std::vector<RunningBrowser>& browsers,
                        const ProcessNames& names) {
  DesktopProcess process;
  process.pid = pid;
  const auto browser = std::ranges::find(browsers, pid, &RunningBrowser::process);
  // Browsers are known already; of the others the program has to be read.
  const std::filesystem::path program = browser == browsers.end() ? names.programOf(pid) : std::filesystem::path();
  // A browser that isn't among those that run for this user is told by its program.
  const BrowserFacts* facts =
      browser != browsers.end() ? browser->facts : platform::findBrowserOfProgram(program.native());
  process.isHeadless = browser != browsers.end() && browser->isHeadless;
  if (facts) {
    process.name = facts->name;
    process.bundleIdentifier = facts->id;
    return process;
  }
  process.name = program.filename().string();
  process.bundleIdentifier = process.name;
  const auto application = window && names.applicationOf ? names.applicationOf(*window) : std::nullopt;
  if (application) {
    process.name = application->name;
    process.bundleIdentifier = platform::lowercased(application->id);
  }
  return process;
}

/// A dialog is one of the process's own windows. Nothing keeps a program from naming another's, or itself.
void forgetWrongOwners(std::vector<DesktopWindow>& windows) {
  const auto ownerOf = [&](const DesktopWindow& window) {
    return std::ranges::find(windows, window.dialogOf, &DesktopWindow::id);
  };
  for (DesktopWindow& window : windows)
    window.dialogOf = ownerOf(window) != windows.end() ? window.dialogOf : 0;
  // A chain of owners that is longer than there are windows is a circle, and is cut at the window looked at.
  for (DesktopWindow& window : windows) {
    const DesktopWindow* above = &window;
    for (std::size_t steps = 0; above->dialogOf != 0 && steps < windows.size(); ++steps)
      above = &*ownerOf(*above);
    window.dialogOf = above->dialogOf == 0 ? window.dialogOf : 0;
  }
}

bool isBrowser(const DesktopProcess& process) {
  return platform::findBrowser(process.bundleIdentifier) != nullptr;
}

/// `isInSight`: the process has a window on the workspace that the user sees.
std::vector<DesktopProcess>::iterator frontmost(std::vector<DesktopProcess>& processes,
                                                const std::function<bool(const DesktopProcess&)>& isInSight) {
  if (const auto active = std::ranges::find_if(processes, &DesktopProcess::isFrontmost); active != processes.end())
    return active;
  if (const auto shown = std::ranges::find_if(processes, isInSight); shown != processes.end())
    return shown;
  return std::ranges::find_if(processes, isBrowser);
}

} // namespace

pid_t processOfWindow(const ClientWindow& window, const std::vector<RunningBrowser>& browsers) {
  // A number of another namespace may be that of any process here, so the window's class has to be the browser's too.
  const auto sandboxed = std::ranges::find_if(browsers, [&](const RunningBrowser& browser) {
    return browser.innerProcess == window.pid && browser.innerProcess != browser.process &&
           sameIgnoringCase(browser.facts->windowClass, window.windowClass);
  });
  return sandboxed != browsers.end() ? sandboxed->process : window.pid;
}

std::vector<DesktopProcess> desktopProcesses(const std::vector<ClientWindow>& windows,
                                             const std::vector<RunningBrowser>& browsers, const ProcessNames& names) {
  std::vector<DesktopProcess> processes;
  const auto find = [&](pid_t pid) { return std::ranges::find(processes, pid, &DesktopProcess::pid); };
  for (const ClientWindow& window : windows) {
    const pid_t pid = processOfWindow(window, browsers);
    // Nobody tells whose it is.
    if (pid == 0)
      continue;
    auto process = find(pid);
    if (process == processes.end())
      process = processes.insert(processes.end(), describe(pid, &window, browsers, names));
    process->isFrontmost |= window.isActive;
    process->isVisible |= window.isShown;
    process->windows.push_back({.id = window.id,
                                .name = window.name,
                                .place = window.place,
                                .isShown = window.isShown,
                                .isActive = window.isActive,
                                .isFullScreen = window.isFullScreen,
                                .dialogOf = window.dialogOf,
                                .shownBy = window.shownBy});
  }
  for (const RunningBrowser& browser : browsers) {
    if (find(browser.process) == processes.end())
      processes.push_back(describe(browser.process, nullptr, browsers, names));
  }
  for (DesktopProcess& process : processes)
    forgetWrongOwners(process.windows);
  // Those whose windows are all minimised go to the end, in their order.
  std::vector<DesktopProcess> left;
  std::ranges::copy_if(processes, std::back_inserter(left), std::not_fn(&DesktopProcess::isVisible));
  std::erase_if(processes, std::not_fn(&DesktopProcess::isVisible));
  processes.insert(processes.end(), left.begin(), left.end());
  const auto isInSight = [&](const DesktopProcess& process) {
    return std::ranges::any_of(windows, [&](const ClientWindow& window) {
      return window.isShown && window.isHere && processOfWindow(window, browsers) == process.pid;
    });
  };
  if (const auto front = frontmost(processes, isInSight); front != processes.end()) {
    front->isFrontmost = true;
    // The others keep their order behind it.
    std::rotate(processes.begin(), front, front + 1);
  }
  return processes;
}

} // namespace tabwright::scripting
