#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::scripting {

/// A top-level window of an application.
struct ClientWindow {
  std::uint32_t id = 0;
  pid_t pid = 0; ///< of its process; 0 when neither the window nor the display server knows it
  std::string name;
  std::string windowClass; ///< the class of WM_CLASS, such as "Chromium"; the same for all windows of an application
  bool isShown = false;    ///< not iconified
  bool isActive = false;   ///< has the keyboard
};

/// The windows of an X11 display, as its window manager reports them (Extended Window Manager Hints 1.5, ICCCM 2.0);
/// without a window manager, as the window tree and the input focus do. Panels and the desktop's own background are no
/// windows of applications and left out.
///
/// Calls are serialised by the object, so it may be used from several threads. When the display is lost, `windows`
/// gives none and the rest does nothing.
class WindowSystem {
public:
  /// Connects to the display of that name (":0"; empty: the environment's). Null when there is none.
  [[nodiscard]] static std::unique_ptr<WindowSystem> connect(const std::string& display = {});
  ~WindowSystem();
  WindowSystem(const WindowSystem&) = delete;
  WindowSystem& operator=(const WindowSystem&) = delete;

  /// All application windows, front to back, iconified ones in their places. None is active while the user is in none,
  /// as on the empty desktop.
  [[nodiscard]] std::vector<ClientWindow> windows();

  /// Raises a window, opens it if it is iconified, and gives it the keyboard. Returns when it has it, or after half a
  /// second.
  void activate(std::uint32_t window);
  /// Iconifies windows, the last one first, or opens them again. Returns when all are so and the next window has the
  /// keyboard, or after half a second. Without a window manager they are taken off the screen, and known as iconified
  /// for as long as this object lives.
  void iconify(const std::vector<std::uint32_t>& windows);
  void open(const std::vector<std::uint32_t>& windows);

private:
  struct Connection;
  explicit WindowSystem(std::unique_ptr<Connection> connection);
  std::unique_ptr<Connection> connection_;
};

} // namespace tabwright::scripting
