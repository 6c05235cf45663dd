#pragma once

#include "platform/Pointer.h"

#include <string>
#include <utility>

namespace tabwright::platform {

/// The pointer of an X11 display, by its extension XTEST. Connects for each click. Without state: safe to use from any
/// thread.
class X11Pointer final : public Pointer {
public:
  /// `display` as for X11Display.
  explicit X11Pointer(std::string display = {}) : display_(std::move(display)) {}

  /// Returns when the display has moved the pointer and sent the click on.
  void click(int x, int y) override;

private:
  const std::string display_;
};

} // namespace tabwright::platform
