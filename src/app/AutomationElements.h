#pragma once

#include "automation/DesktopServices.h"
#include "scripting/systemevents/Desktop.h"

namespace tabwright::app {

/// A process of the desktop as targets of actions are told. Nothing is looked up: the process says it all.
[[nodiscard]] targets::RunningApplication applicationOf(const scripting::DesktopProcess& process);

/// The menus and elements that scripts see through System Events, read as the actions on menus read them, so that both
/// find the same items by the same names.
///
/// Keeps nothing between calls. Throws the failures of `automation::AxeApp` for an application that can't be read, and
/// `AxeError::menuItemNotFound` for a path that leads to nothing that can be chosen.
class AutomationElements final : public scripting::DesktopElements {
public:
  /// `services` outlive this.
  explicit AutomationElements(const automation::DesktopServices& services) : services_(services) {}

  [[nodiscard]] std::vector<scripting::MenuEntry> menuEntries(const scripting::DesktopProcess& process,
                                                              scripting::MenuPath path,
                                                              const platform::CallLimits& limits) override;
  void chooseMenuItem(const scripting::DesktopProcess& process, scripting::MenuPath path,
                      const platform::CallLimits& limits) override;
  [[nodiscard]] platform::AccessibleElement application(const scripting::DesktopProcess& process,
                                                        const platform::CallLimits& limits) override;
  [[nodiscard]] platform::Accessibility& accessibility() override { return services_.accessibility; }

private:
  const automation::DesktopServices& services_;
};

} // namespace tabwright::app
