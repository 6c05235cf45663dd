#pragma once

#include "automation/DesktopServices.h"
#include "scripting/systemevents/Desktop.h"

namespace tabwright::app {

/// A process of the desktop as targets of actions are told.
[[nodiscard]] targets::RunningApplication applicationOf(const scripting::DesktopProcess& process);

/// The menus and elements that scripts see through System Events, read as the actions on menus read them.
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
