#pragma once

namespace tabwright::platform {

/// A place on the screen in its pixels, from its upper left corner. With several monitors they are one screen. The
/// corner is negative for what begins beyond the screen's left or upper edge.
struct Rectangle {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

} // namespace tabwright::platform
