#pragma once

#include "platform/Appearance.h"

namespace tabwright::platform {

/// The setting that desktops of GTK share (`org.gnome.desktop.interface color-scheme`), by the command that Debian's
/// libglib2.0-bin brings. A call takes some 20 ms, and ends within 5 seconds. Light is the setting's "default", so a
/// desktop that has no preference counts as light.
class GnomeAppearance final : public Appearance {
public:
  /// Each call starts a process. Stateless: safe to use from any thread.
  [[nodiscard]] bool isDark() override;
  void setDark(bool isDark) override;
};

} // namespace tabwright::platform
