// Windows, keys and the rest are the platform's; here they are told by process. Processes are looked for anew each
// time, but for the frontmost one: programs that type ask for it before each key, so it is kept for a moment, and
// dropped when something done here may bring another to the front.
#include "scripting/systemevents/LinuxDesktop.h"

#include "platform/DesktopFault.h"
#include "platform/KeyCodes.h"
#include "platform/Logger.h"
#include "scripting/systemevents/DesktopProcesses.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace tabwright::scripting {

using platform::ClientWindow;
using platform::DesktopFault;

namespace {

const platform::Logger desktopLog("LinuxDesktop");

// For as long the same answer is given about the frontmost process.
constexpr std::chrono::milliseconds validity{20};

/// The modifiers of a PC's keyboard that do the same.
platform::KeyModifiers pressed(std::span<const ModifierKey> modifiers) {
  const auto isHeld = [&](ModifierKey modifier) { return std::ranges::find(modifiers, modifier) != modifiers.end(); };
  return platform::keysOf({.command = isHeld(ModifierKey::command),
                           .control = isHeld(ModifierKey::control),
                           .option = isHeld(ModifierKey::option),
                           .shift = isHeld(ModifierKey::shift)});
}

} // namespace

LinuxDesktop::LinuxDesktop(const Seams& seams, platform::RunningBrowsers browsers)
    : seams_(seams), browsers_(std::move(browsers)) {}

std::vector<ClientWindow> LinuxDesktop::windowsIfAny() {
  try {
    return seams_.windows.windows();
  } catch (const platform::DesktopFailure& failure) {
    // Browsers without windows can be driven all the same.
    desktopLog.debug("{}", failure.errorDescription());
    return {};
  }
}

std::vector<DesktopProcess> LinuxDesktop::processes() {
  return desktopProcesses(
      windowsIfAny(), browsers_.findAll(),
      {.programOf = [this](pid_t pid) { return browsers_.programOf(pid); },
       .applicationOf = [this](const ClientWindow& window) { return seams_.installed.applicationOf(window); }});
}

std::optional<DesktopProcess> LinuxDesktop::frontmost() {
  const auto now = std::chrono::steady_clock::now();
  {
    const platform::MutexLock lock(mutex_);
    if (now - seenAt_ < validity)
      return frontmost_;
  }
  std::vector<DesktopProcess> all = processes();
  std::optional<DesktopProcess> front;
  if (!all.empty() && all.front().isFrontmost)
    front = std::move(all.front());
  const platform::MutexLock lock(mutex_);
  frontmost_ = front;
  seenAt_ = now;
  return front;
}

void LinuxDesktop::forget() {
  const platform::MutexLock lock(mutex_);
  seenAt_ = {};
}

std::vector<ClientWindow> LinuxDesktop::requireWindows(pid_t process) {
  std::vector<ClientWindow> mine = seams_.windows.windows();
  const std::vector<platform::RunningBrowser> browsers = browsers_.findAll();
  std::erase_if(mine, [&](const ClientWindow& window) { return processOfWindow(window, browsers) != process; });
  // A process that is gone has no windows either.
  if (mine.empty())
    throw platform::failure(DesktopFault::noWindow, browsers_.programOf(process).filename().string());
  return mine;
}

void LinuxDesktop::activate(pid_t process) {
  try {
    const std::vector<ClientWindow> windows = requireWindows(process);
    // A minimised window is opened only when no other can come forward.
    const auto shown = std::ranges::find_if(windows, &ClientWindow::isShown);
    seams_.windows.activate(shown != windows.end() ? shown->id : windows.front().id);
    forget();
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
  show(ids, visibility);
}

void LinuxDesktop::show(const std::vector<std::uint32_t>& windows, Visibility visibility) {
  if (visibility == Visibility::hidden)
    seams_.windows.minimise(windows);
  else
    seams_.windows.restore(windows);
  forget();
}

void LinuxDesktop::raise(std::uint32_t window) {
  seams_.windows.activate(window);
  forget();
}

void LinuxDesktop::setShown(std::uint32_t window, Visibility visibility) {
  show({window}, visibility);
}

void LinuxDesktop::place(std::uint32_t window, const platform::Rectangle& place) {
  seams_.windows.place(window, place);
}

void LinuxDesktop::setFullScreen(std::uint32_t window, bool isFullScreen) {
  seams_.windows.setFullScreen(window, isFullScreen);
}

void LinuxDesktop::close(std::uint32_t window) {
  seams_.windows.close(window);
}

void LinuxDesktop::keystroke(const std::string& text, std::span<const ModifierKey> modifiers,
                             const platform::CallLimits& limits) {
  seams_.keyboard.type(text, pressed(modifiers), limits);
}

void LinuxDesktop::keyCode(int code, std::span<const ModifierKey> modifiers, const platform::CallLimits& limits) {
  const std::optional<platform::Key> key = platform::keyOfCode(code);
  if (!key)
    throw platform::failure(DesktopFault::noSuchKey, fmt::format("key code {}", code));
  seams_.keyboard.press(*key, pressed(modifiers), limits);
}

void LinuxDesktop::modifiers(KeyTransition transition, std::span<const ModifierKey> keys) {
  if (transition == KeyTransition::down)
    seams_.keyboard.hold(pressed(keys));
  else
    seams_.keyboard.release(pressed(keys));
}

} // namespace tabwright::scripting
