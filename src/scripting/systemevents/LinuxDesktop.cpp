#include "scripting/systemevents/LinuxDesktop.h"

#include "platform/BrowserTable.h"
#include "scripting/systemevents/DesktopFault.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

namespace tabwright::scripting {

using platform::BrowserFacts;

namespace {

/// Base name of a process's program; empty for one that is gone, or another user's.
std::string programName(pid_t pid) {
  std::error_code error;
  std::string name = std::filesystem::read_symlink(fmt::format("/proc/{}/exe", pid), error).filename().string();
  // The kernel marks a program whose file was replaced, as by an update.
  if (constexpr std::string_view deleted = " (deleted)"; name.ends_with(deleted))
    name.resize(name.size() - deleted.size());
  return name;
}

const BrowserFacts* browserOfProgram(std::string_view program) {
  const auto row = std::ranges::find_if(platform::browserTable, [&](const BrowserFacts& facts) {
    return std::ranges::find(facts.processNames, program) != facts.processNames.end();
  });
  return row == platform::browserTable.end() ? nullptr : &*row;
}

DesktopProcess describe(pid_t pid) {
  DesktopProcess process;
  process.pid = pid;
  const std::string program = programName(pid);
  const BrowserFacts* facts = browserOfProgram(program);
  process.name = facts != nullptr ? std::string(facts->name) : program;
  process.bundleIdentifier = facts != nullptr ? std::string(facts->id) : program;
  return process;
}

} // namespace

WindowSystem* LinuxDesktop::windowSystem() {
  const std::lock_guard lock(mutex_);
  if (!windowSystem_ && std::getenv("DISPLAY") != nullptr)
    windowSystem_ = WindowSystem::connect();
  return windowSystem_.get();
}

std::vector<DesktopProcess> LinuxDesktop::processes() {
  std::vector<DesktopProcess> processes;
  const auto find = [&](pid_t pid) { return std::ranges::find(processes, pid, &DesktopProcess::pid); };
  WindowSystem* windows = windowSystem();
  for (ClientWindow& window : windows != nullptr ? windows->windows() : std::vector<ClientWindow>{}) {
    if (window.pid == 0)
      continue;
    auto process = find(window.pid);
    if (process == processes.end())
      process = processes.insert(processes.end(), describe(window.pid));
    process->isFrontmost |= window.isActive;
    process->isVisible |= window.isShown;
    process->windows.push_back({window.id, std::move(window.name)});
  }
  const bool hasWindows = !processes.empty();
  std::uint64_t latestStart = 0;
  std::optional<pid_t> latest;
  for (const BrowserFacts& facts : platform::browserTable) {
    for (const platform::RunningBrowser& browser : browsers_.find(facts)) {
      if (find(browser.process) != processes.end())
        continue;
      DesktopProcess& process = processes.emplace_back();
      process.pid = browser.process;
      process.name = facts.name;
      process.bundleIdentifier = facts.id;
      if (!latest || browser.startTime > latestStart) {
        latest = browser.process;
        latestStart = browser.startTime;
      }
    }
  }
  if (!hasWindows && latest)
    find(*latest)->isFrontmost = true;
  if (const auto front = std::ranges::find(processes, true, &DesktopProcess::isFrontmost); front != processes.end())
    std::rotate(processes.begin(), front, front + 1);
  return processes;
}

std::vector<ClientWindow> LinuxDesktop::requireWindows(pid_t process) {
  WindowSystem* system = windowSystem();
  if (system == nullptr)
    throw platform::failure(DesktopFault::noWindowSystem);
  std::vector<ClientWindow> windows = system->windows();
  std::erase_if(windows, [&](const ClientWindow& window) { return window.pid != process; });
  if (windows.empty())
    throw platform::failure(DesktopFault::noWindow, describe(process).name);
  return windows;
}

void LinuxDesktop::activate(pid_t process) {
  if (windowSystem() == nullptr) {
    // Without windows the frontmost one is where it is wanted already.
    const std::vector<DesktopProcess> all = processes();
    if (!all.empty() && all.front().isFrontmost && all.front().pid == process)
      return;
  }
  const std::vector<ClientWindow> windows = requireWindows(process);
  const auto shown = std::ranges::find_if(windows, &ClientWindow::isShown);
  windowSystem()->activate(shown != windows.end() ? shown->id : windows.front().id);
}

void LinuxDesktop::setVisible(pid_t process, Visibility visibility) {
  std::vector<std::uint32_t> ids;
  for (const ClientWindow& window : requireWindows(process))
    ids.push_back(window.id);
  if (visibility == Visibility::hidden)
    windowSystem()->iconify(ids);
  else
    windowSystem()->open(ids);
}

std::vector<MenuEntry> LinuxDesktop::menuEntries(pid_t, MenuPath) {
  throw platform::failure(DesktopFault::menusUnavailable);
}

void LinuxDesktop::chooseMenuItem(pid_t, MenuPath) {
  throw platform::failure(DesktopFault::menusUnavailable);
}

void LinuxDesktop::keystroke(const std::string&, std::span<const ModifierKey>) {
  throw platform::failure(DesktopFault::keysUnavailable);
}

void LinuxDesktop::keyCode(int, std::span<const ModifierKey>) {
  throw platform::failure(DesktopFault::keysUnavailable);
}

void LinuxDesktop::modifiers(KeyTransition, std::span<const ModifierKey>) {
  throw platform::failure(DesktopFault::keysUnavailable);
}

} // namespace tabwright::scripting
