#pragma once

namespace tabwright::platform {

/// The pointer, moved from outside. It is the user's own, who sees it move.
class Pointer {
public:
  virtual ~Pointer() = default;

  /// Clicks with the first button at a place on the screen, in its pixels. Whatever is on top there gets the click. The
  /// pointer stays there: a browser looks where it is when it takes the click up, which may be later. May come from
  /// several threads. Throws DesktopFailure: `noWindowSystem`, `wayland`, `noKeyPresses`.
  virtual void click(int x, int y) = 0;
};

} // namespace tabwright::platform
