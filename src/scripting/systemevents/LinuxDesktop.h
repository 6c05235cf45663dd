#pragma once

#include "platform/linux/RunningBrowsers.h"
#include "platform/linux/X11WindowSystem.h"
#include "scripting/systemevents/Desktop.h"

#include <string>
#include <vector>

namespace tabwright::scripting {

/// The desktop of this machine: processes and their windows from X11 and the process file system.
///
/// A process is an application with windows, or a supported browser without any (one that runs headless, or on a
/// display of another kind); see `desktopProcesses` for their order. Where no window system is to be had, only the
/// browsers are left, and the one started last counts as frontmost. Menus and keys are not served yet: those calls
/// throw platform::DesktopFailure.
class LinuxDesktop final : public Desktop {
public:
  /// `display` is the name of an X11 display; empty: the one that DISPLAY names, if any, at the time of each call.
  explicit LinuxDesktop(platform::RunningBrowsers browsers = platform::RunningBrowsers(), std::string display = {});

  [[nodiscard]] std::vector<DesktopProcess> processes() override;
  void activate(pid_t process) override;
  void setVisible(pid_t process, Visibility visibility) override;
  [[nodiscard]] std::vector<MenuEntry> menuEntries(pid_t process, MenuPath path) override;
  void chooseMenuItem(pid_t process, MenuPath path) override;
  void keystroke(const std::string& text, std::span<const ModifierKey> modifiers) override;
  void keyCode(int code, std::span<const ModifierKey> modifiers) override;
  void modifiers(KeyTransition transition, std::span<const ModifierKey> keys) override;

private:
  /// None where there is no window system.
  std::vector<platform::ClientWindow> windowsIfAny();
  /// Windows of a process front to back; throws DesktopFailure when it has none.
  std::vector<platform::ClientWindow> requireWindows(pid_t process);

  const platform::RunningBrowsers browsers_;
  platform::X11WindowSystem windowSystem_;
};

} // namespace tabwright::scripting
