#pragma once

namespace tabwright::platform {

/// The pointer, moved from outside.
class Pointer {
public:
  virtual ~Pointer() = default;

  /// Clicks with the first button at a place on the screen, in its pixels, and puts the pointer back to where it was.
  /// Whatever is on top there gets the click. May come from several threads. Throws DesktopFailure: `noWindowSystem`,
  /// `wayland`, `noKeyPresses`.
  virtual void click(int x, int y) = 0;
};

} // namespace tabwright::platform
