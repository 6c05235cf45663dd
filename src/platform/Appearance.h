#pragma once

namespace tabwright::platform {

/// The look that the desktop wants its windows to have. It is the user's own setting, which all programs follow and
/// which outlives this process. Calls block their thread.
class Appearance {
public:
  virtual ~Appearance() = default;

  /// True when windows are to be light on dark. Both throw DesktopFailure `noAppearance`, and may come from several
  /// threads.
  [[nodiscard]] virtual bool isDark() = 0;
  /// Sets the wish for light on dark, or takes it back.
  virtual void setDark(bool isDark) = 0;
};

} // namespace tabwright::platform
