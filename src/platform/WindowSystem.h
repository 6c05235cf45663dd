#pragma once

#include "platform/Rectangle.h"

#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::platform {

/// A top-level window of an application. A copy of what was told at one moment: it may have changed or gone by the time
/// it is read.
struct ClientWindow {
  std::uint32_t id = 0;
  pid_t pid = 0;             ///< of its process; 0 when neither the window nor the display server tells
  std::string name;          ///< its title, UTF-8
  std::string windowClass;   ///< the class of WM_CLASS, such as "Chromium"; the same for all windows of an application
  std::string instance;      ///< the instance of WM_CLASS, which may differ between windows
  std::string applicationID; ///< id of its desktop entry, which GTK programs tell; empty for others
  std::optional<std::uint32_t> workspace; ///< from 0; nothing: it is on all of them, or there is but one
  Rectangle place;                        ///< without the frame around it
  bool isShown = false;                   ///< not minimised. It may be covered, or on another workspace
  bool isHere = true;                     ///< on the workspace that the user sees
  bool isActive = false;                  ///< has the keyboard
  bool isFullScreen = false;
  std::uint32_t dialogOf = 0; ///< of a modal dialog: the window that waits for it; 0 for other windows
  pid_t shownBy = 0;          ///< of a dialog that the desktop's portal shows in the application's place: its process
};

/// The windows of all applications on a screen.
///
/// Panels and the desktop's own background are no windows of applications and left out. A window that is asked for and
/// gone is no error of anything but `place`.
///
/// Calls that change something return when the window system shows the change, or after half a second where it
/// doesn't follow: window managers may refuse, and then nothing has happened. All may come from several threads; they
/// take turns. All throw DesktopFailure: `noWindowSystem`, `wayland`; a window system that comes back is found again by
/// the next call.
///
///     for (const ClientWindow& window : system.windows())
///       if (window.pid == process)
///         system.activate(window.id);
class WindowSystem {
public:
  virtual ~WindowSystem() = default;

  /// All application windows, front to back, minimised ones and those on other workspaces in their places. None is
  /// active while the user is in none, as on the empty desktop.
  [[nodiscard]] virtual std::vector<ClientWindow> windows() = 0;

  /// Raises a window, opens it if it is minimised, goes to its workspace, and gives it the keyboard.
  virtual void activate(std::uint32_t window) = 0;
  /// Minimises windows, the last one first, so that none of them becomes active in between. When it returns, the next
  /// window has the keyboard.
  virtual void minimise(const std::vector<std::uint32_t>& windows) = 0;
  /// Opens minimised windows again, the last one first, without asking for the keyboard.
  virtual void restore(const std::vector<std::uint32_t>& windows) = 0;
  /// Moves a window and gives it another size: `place` as ClientWindow tells it. Applications may round the size.
  /// Throws `windowGone`.
  virtual void place(std::uint32_t window, const Rectangle& place) = 0;
  /// Lets a window fill its screen without a frame, or gives it its former place again. Nothing happens without a
  /// window manager.
  virtual void setFullScreen(std::uint32_t window, bool isFullScreen) = 0;
  /// Asks a window to close, as a click on its close button does. Returns at once: it may ask the user to save first.
  virtual void close(std::uint32_t window) = 0;
};

} // namespace tabwright::platform
