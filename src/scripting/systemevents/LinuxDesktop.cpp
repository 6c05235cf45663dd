#include "scripting/systemevents/LinuxDesktop.h"

#include "scripting/systemevents/DesktopFault.h"
#include "scripting/systemevents/DesktopProcesses.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace tabwright::scripting {

LinuxDesktop::LinuxDesktop(platform::RunningBrowsers browsers, std::string display)
    : browsers_(std::move(browsers)), display_(std::move(display)) {}

WindowSystem* LinuxDesktop::windowSystem() {
  const platform::MutexLock lock(mutex_);
  if (!windowSystem_ && (!display_.empty() || std::getenv("DISPLAY")))
    windowSystem_ = WindowSystem::connect(display_);
  return windowSystem_.get();
}

std::vector<ClientWindow> LinuxDesktop::windows() {
  WindowSystem* system = windowSystem();
  return system ? system->windows() : std::vector<ClientWindow>{};
}

std::vector<DesktopProcess> LinuxDesktop::processes() {
  return desktopProcesses(windows(), browsers_.findAll(), [this](pid_t pid) { return browsers_.programOf(pid); });
}

std::vector<ClientWindow> LinuxDesktop::requireWindows(pid_t process) {
  if (!windowSystem())
    throw platform::failure(DesktopFault::noWindowSystem);
  const std::vector<platform::RunningBrowser> browsers = browsers_.findAll();
  std::vector<ClientWindow> mine = windows();
  std::erase_if(mine, [&](const ClientWindow& window) { return processOfWindow(window, browsers) != process; });
  if (mine.empty())
    throw platform::failure(DesktopFault::noWindow, browsers_.programOf(process).filename().string());
  return mine;
}

void LinuxDesktop::activate(pid_t process) {
  if (!windowSystem()) {
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
