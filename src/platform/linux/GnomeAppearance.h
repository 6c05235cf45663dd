#pragma once

#include "platform/Appearance.h"

namespace tabwright::platform {

/// The setting that desktops of GTK share (`org.gnome.desktop.interface color-scheme`), by the command that Debian's
/// libglib2.0-bin brings. A call takes some 20 ms, and ends within 5 seconds.
class GnomeAppearance final : public Appearance {
public:
  [[nodiscard]] bool isDark() override;
  void setDark(bool isDark) override;
};

} // namespace tabwright::platform
