#pragma once

#include "platform/linux/RunningBrowsers.h"
#include "scripting/systemevents/Desktop.h"
#include "scripting/systemevents/WindowSystem.h"

#include <memory>
#include <mutex>

namespace tabwright::scripting {

/// The desktop of this machine: processes and their windows from X11 and the process file system.
///
/// A process is an application with windows, or a supported browser without any (one that runs headless). Where no
/// window system is to be had, only the browsers are left, and the one started last counts as frontmost. Menus and keys
/// are not served yet: those calls throw DesktopFailure.
class LinuxDesktop final : public Desktop {
public:
  LinuxDesktop() = default;

  [[nodiscard]] std::vector<DesktopProcess> processes() override;
  void activate(pid_t process) override;
  void setVisible(pid_t process, Visibility visibility) override;
  [[nodiscard]] std::vector<MenuEntry> menuEntries(pid_t process, MenuPath path) override;
  void chooseMenuItem(pid_t process, MenuPath path) override;
  void keystroke(const std::string& text, std::span<const ModifierKey> modifiers) override;
  void keyCode(int code, std::span<const ModifierKey> modifiers) override;
  void modifiers(KeyTransition transition, std::span<const ModifierKey> keys) override;

private:
  /// Null when there is no display. Connects when first asked; asks again as long as there is none.
  WindowSystem* windowSystem();
  /// Windows of a process front to back; throws DesktopFailure when it has none.
  std::vector<ClientWindow> requireWindows(pid_t process);

  std::mutex mutex_;
  std::unique_ptr<WindowSystem> windowSystem_;
  platform::RunningBrowsers browsers_;
};

} // namespace tabwright::scripting
