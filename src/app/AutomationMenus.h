#pragma once

#include "automation/DesktopServices.h"
#include "scripting/systemevents/Desktop.h"

namespace tabwright::app {

/// A process of the desktop as targets of actions are told.
[[nodiscard]] targets::RunningApplication applicationOf(const scripting::DesktopProcess& process);

/// The menus that scripts see through System Events, read as the actions on menus read them.
class AutomationMenus final : public scripting::DesktopMenus {
public:
  /// `services` outlive this.
  explicit AutomationMenus(const automation::DesktopServices& services) : services_(services) {}

  [[nodiscard]] std::vector<scripting::MenuEntry> menuEntries(const scripting::DesktopProcess& process,
                                                              scripting::MenuPath path,
                                                              const platform::CallLimits& limits) override;
  void chooseMenuItem(const scripting::DesktopProcess& process, scripting::MenuPath path,
                      const platform::CallLimits& limits) override;

private:
  const automation::DesktopServices& services_;
};

} // namespace tabwright::app
