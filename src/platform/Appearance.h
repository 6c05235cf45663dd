#pragma once

namespace tabwright::platform {

/// The look that the desktop wants its windows to have.
class Appearance {
public:
  virtual ~Appearance() = default;

  /// True when windows are to be light on dark. Both throw DesktopFailure `noAppearance`, and may come from several
  /// threads.
  [[nodiscard]] virtual bool isDark() = 0;
  virtual void setDark(bool isDark) = 0;
};

} // namespace tabwright::platform
