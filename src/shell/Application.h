#pragma once

#include "shell/ApplicationDelegate.h"
#include "shell/Window.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tabwright::shell {

/// The process as its desktop sees it: hidden or not, its windows, its end. On the main actor only, but for `isHidden`.
class Application {
public:
  virtual ~Application() = default;

  /// True when the process runs without showing itself, as one does that was started to serve an action.
  [[nodiscard]] virtual bool isHidden() const = 0;

  /// The open windows, in the application's order; they belong to it and are valid until they are closed.
  [[nodiscard]] virtual std::vector<Window*> windows() const = 0;

  /// The window that has the keyboard's focus; null when none of this process has it.
  [[nodiscard]] virtual Window* keyWindow() const = 0;
  /// The setup's window, shown or closed; null as long as none was made. It belongs to the application and stays.
  [[nodiscard]] virtual Window* onboardingWindow() const = 0;
  /// Makes it, without showing it; called at most once. Null where this process can't show windows.
  virtual Window* makeOnboardingWindow() = 0;

  /// Opens an address with the program that the desktop has for it. False when there is none.
  virtual bool openAddress(const std::string& address) = 0;
  /// Shows a file in the desktop's file manager, selected.
  virtual void revealFile(const std::filesystem::path& file) = 0;

  /// True when the window manager may gather windows as tabs of one.
  virtual void setAllowsAutomaticWindowTabbing(bool isAllowed) = 0;

  /// Sets the object that is notified of start and end; it outlives the application. Null: none.
  virtual void setDelegate(ApplicationDelegate* delegate) = 0;

  /// Quits: notifies the delegate, then ends the process's work. Returns. Further calls do nothing.
  virtual void terminate() = 0;
};

} // namespace tabwright::shell
