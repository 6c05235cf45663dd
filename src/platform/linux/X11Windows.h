#pragma once

#include "platform/WindowSystem.h"
#include "platform/linux/X11Display.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb_ewmh.h>

namespace tabwright::platform {

/// The windows of an X11 display as it tells of them now: by the window manager's lists where there is one, else by the
/// window tree and the input focus. Changes nothing. For one thread at a time. When the display is lost there are none.
/// All windows cost one round trip for their list and one for all that is told of them, however many there are; a few
/// more for what some of them lack.
class X11Windows {
public:
  /// Throws DesktopFailure. Connects. `display` as for X11Display.
  explicit X11Windows(const std::string& display);
  ~X11Windows();
  X11Windows(const X11Windows&) = delete;
  X11Windows& operator=(const X11Windows&) = delete;

  [[nodiscard]] const X11Display& display() const noexcept { return display_; }
  /// For requests; it isn't changed.
  [[nodiscard]] xcb_ewmh_connection_t* hints() noexcept { return &ewmh_; }

  /// All windows, as WindowSystem tells of them. Blocks for the display's answers.
  [[nodiscard]] std::vector<ClientWindow> read();
  /// True where a window manager tells of windows. It may come and go, so this is asked each time.
  [[nodiscard]] bool isManaged();
  /// The one that has the keyboard; 0: none. One round trip, more without a window manager.
  [[nodiscard]] std::uint32_t active();
  /// The window that a dialog belongs to; 0 for other windows.
  [[nodiscard]] std::uint32_t ownerOf(std::uint32_t window);
  /// Nothing for a window that is gone.
  [[nodiscard]] std::optional<Rectangle> placeOf(std::uint32_t window);
  /// The workspace that must be gone to for a window to be seen; nothing when it is on the one that is shown.
  [[nodiscard]] std::optional<std::uint32_t> workspaceElsewhere(std::uint32_t window);

  /// Counts a window as minimised that was taken off the screen where no manager keeps it. It counts so until it is
  /// seen again or gone.
  void noteHidden(std::uint32_t window) { hidden_.push_back(window); }

private:
  /// The window manager's list, front to back; nothing without a window manager.
  std::optional<std::vector<std::uint32_t>> managedWindows();
  /// The windows in the tree that programs show, front to back, and those noted as hidden.
  std::vector<std::uint32_t> unmanagedWindows();
  std::uint32_t active(bool isManaged);
  /// The child of the root that a window is in; 0 when it is in none, such as the root itself.
  std::uint32_t topLevelOf(std::uint32_t window);
  /// True for a window that `noteHidden` has noted.
  [[nodiscard]] bool isHidden(std::uint32_t window) const;

  /// The connection and its wrapper for EWMH, which has the atoms of that standard.
  const X11Display display_;
  xcb_connection_t* const xcb_;
  xcb_ewmh_connection_t ewmh_{};
  /// The atoms of `_GTK_APPLICATION_ID` and `WM_STATE`.
  std::uint32_t applicationID_ = 0;
  std::uint32_t stage_ = 0;
  std::vector<std::uint32_t> hidden_; ///< by us, without a window manager
};

} // namespace tabwright::platform
