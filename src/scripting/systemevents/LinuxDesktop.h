#pragma once

#include "platform/Appearance.h"
#include "platform/InstalledApplications.h"
#include "platform/Keyboard.h"
#include "platform/Mutex.h"
#include "platform/Pointer.h"
#include "platform/WindowSystem.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/systemevents/Desktop.h"

#include <chrono>
#include <string>
#include <vector>

namespace tabwright::scripting {

/// The desktop of this machine: processes and their windows from the window system and the process file system.
///
/// A process is an application with windows, or a supported browser without any (one that runs headless, or on a
/// display of another kind); see `desktopProcesses` for their order. Where no window system is to be had, only the
/// browsers are left, and the one started last counts as frontmost.
///
/// Connects to nothing before it is first needed, as its parts do. Safe to use from any thread. Throws DesktopFailure,
/// and whatever the given keyboard throws.
class LinuxDesktop final : public Desktop {
public:
  /// The parts that it is made of; all outlive it.
  struct Seams {
    platform::WindowSystem& windows;
    platform::Keyboard& keyboard;
    platform::Pointer& pointer;
    platform::Appearance& appearance;
    platform::InstalledApplications& installed;
    DesktopElements& elements;
  };
  explicit LinuxDesktop(const Seams& seams, platform::RunningBrowsers browsers = platform::RunningBrowsers());

  /// Asks the window system and reads the process table anew.
  [[nodiscard]] std::vector<DesktopProcess> processes() override;
  /// As of the last 20 ms. What is done here to bring another application to the front makes the next look a new one.
  [[nodiscard]] std::optional<DesktopProcess> frontmost() override;
  /// Its frontmost window that is shown, else its frontmost minimised one. DesktopFault `noWindow` for a process
  /// without.
  void activate(pid_t process) override;
  /// DesktopFault `noWindow` for a process without windows.
  void setVisible(pid_t process, Visibility visibility) override;
  void raise(std::uint32_t window) override;
  void setShown(std::uint32_t window, Visibility visibility) override;
  void place(std::uint32_t window, const platform::Rectangle& place) override;
  void setFullScreen(std::uint32_t window, bool isFullScreen) override;
  void close(std::uint32_t window) override;
  [[nodiscard]] DesktopElements& elements() override { return seams_.elements; }
  void clickAt(int x, int y) override { seams_.pointer.click(x, y); }
  [[nodiscard]] bool isDark() override { return seams_.appearance.isDark(); }
  void setDark(bool isDark) override { seams_.appearance.setDark(isDark); }
  void keystroke(const std::string& text, std::span<const ModifierKey> modifiers,
                 const platform::CallLimits& limits) override;
  /// DesktopFault `noSuchKey` for a code that no key of a PC's keyboard stands for.
  void keyCode(int code, std::span<const ModifierKey> modifiers, const platform::CallLimits& limits) override;
  void modifiers(KeyTransition transition, std::span<const ModifierKey> keys) override;

private:
  /// None where there is no window system.
  std::vector<platform::ClientWindow> windowsIfAny();
  /// Windows of a process front to back; throws DesktopFailure when it has none.
  std::vector<platform::ClientWindow> requireWindows(pid_t process);

  /// Minimises windows or opens them again, all in one call: their order stays.
  void show(const std::vector<std::uint32_t>& windows, Visibility visibility);

  /// After a change: the next look is a new one.
  void forget();

  const Seams seams_;
  const platform::RunningBrowsers browsers_;
  platform::Mutex mutex_;
  /// The last answer, and when it was asked for: a long time ago for one that holds no more.
  std::optional<DesktopProcess> frontmost_ GUARDED_BY(mutex_);
  std::chrono::steady_clock::time_point seenAt_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
