#include "scripting/systemevents/LinuxDesktop.h"

#include "platform/DesktopFault.h"
#include "platform/Logger.h"
#include "scripting/systemevents/DesktopProcesses.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace tabwright::scripting {

using platform::ClientWindow;
using platform::DesktopFault;

namespace {

const platform::Logger log("LinuxDesktop");

} // namespace

LinuxDesktop::LinuxDesktop(platform::RunningBrowsers browsers, std::string display)
    : browsers_(std::move(browsers)), windowSystem_(std::move(display)) {}

std::vector<ClientWindow> LinuxDesktop::windowsIfAny() {
  try {
    return windowSystem_.windows();
  } catch (const platform::DesktopFailure& failure) {
    log.debug("{}", failure.errorDescription());
    return {};
  }
}

std::vector<DesktopProcess> LinuxDesktop::processes() {
  return desktopProcesses(windowsIfAny(), browsers_.findAll(), [this](pid_t pid) { return browsers_.programOf(pid); });
}

std::vector<ClientWindow> LinuxDesktop::requireWindows(pid_t process) {
  std::vector<ClientWindow> mine = windowSystem_.windows();
  const std::vector<platform::RunningBrowser> browsers = browsers_.findAll();
  std::erase_if(mine, [&](const ClientWindow& window) { return processOfWindow(window, browsers) != process; });
  if (mine.empty())
    throw platform::failure(DesktopFault::noWindow, browsers_.programOf(process).filename().string());
  return mine;
}

void LinuxDesktop::activate(pid_t process) {
  try {
    const std::vector<ClientWindow> windows = requireWindows(process);
    const auto shown = std::ranges::find_if(windows, &ClientWindow::isShown);
    windowSystem_.activate(shown != windows.end() ? shown->id : windows.front().id);
  } catch (const platform::DesktopFailure& failure) {
    // Without windows the frontmost one is where it is wanted already.
    const bool hasNoWindows = failure.kind() == DesktopFault::noWindowSystem || failure.kind() == DesktopFault::wayland;
    const std::vector<DesktopProcess> all = hasNoWindows ? processes() : std::vector<DesktopProcess>{};
    if (all.empty() || !all.front().isFrontmost || all.front().pid != process)
      throw;
  }
}

void LinuxDesktop::setVisible(pid_t process, Visibility visibility) {
  std::vector<std::uint32_t> ids;
  for (const ClientWindow& window : requireWindows(process))
    ids.push_back(window.id);
  if (visibility == Visibility::hidden)
    windowSystem_.minimise(ids);
  else
    windowSystem_.restore(ids);
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
