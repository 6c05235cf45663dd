#pragma once

#include "platform/Mutex.h"
#include "platform/WindowSystem.h"

#include <memory>
#include <string>

namespace tabwright::platform {

/// The windows of an X11 display, as its window manager tells of them (Extended Window Manager Hints 1.5, ICCCM 2.0);
/// without a window manager, as the window tree and the input focus do. Windows are minimised then by taking them off
/// the screen, and known as minimised for as long as this object lives; there is one workspace.
///
/// Connects when it is first asked something, and anew when the display was lost. Safe to use from any thread: calls
/// take turns, and each may wait half a second for the window manager.
class X11WindowSystem final : public WindowSystem {
public:
  /// `display` is a display's name (":0"); empty: the one that DISPLAY names at the time of connecting.
  explicit X11WindowSystem(std::string display = {});
  /// Windows that are minimised stay so.
  ~X11WindowSystem() override;

  [[nodiscard]] std::vector<ClientWindow> windows() override;
  void activate(std::uint32_t window) override;
  void minimise(const std::vector<std::uint32_t>& windows) override;
  void restore(const std::vector<std::uint32_t>& windows) override;
  void place(std::uint32_t window, const Rectangle& place) override;
  void setFullScreen(std::uint32_t window, bool isFullScreen) override;
  void close(std::uint32_t window) override;

private:
  /// A connection with the requests that change something.
  class Connection;
  /// Throws DesktopFailure. The lock is held while the connection is used. The connection, made anew where the display
  /// was lost.
  Connection& connection() REQUIRES(mutex_);

  const std::string display_;
  Mutex mutex_;
  /// Null until it is first needed.
  std::unique_ptr<Connection> connection_ GUARDED_BY(mutex_);
};

} // namespace tabwright::platform
