#pragma once

#include "automation/MenuSource.h"
#include "platform/Accessibility.h"
#include "platform/CallLimits.h"

#include <optional>
#include <vector>

namespace tabwright::automation {

/// The menus of applications whose closed menus can be read: those of GTK, Qt and most others.
///
/// Nothing is opened. A menu that its application fills only when it shows it has no children; hidden items are left
/// out where they can be told from disabled ones.
class ClosedMenus : public MenuSource {
public:
  /// `bar` is the application's own menu bar. `accessibility` outlives this.
  ClosedMenus(platform::Accessibility& accessibility, platform::AccessibleElement bar,
              std::vector<platform::AccessibleElement> itemsOfBar, platform::CallLimits limits)
      : accessibility_(accessibility), limits_(std::move(limits)), bar_(std::move(bar)),
        itemsOfBar_(std::move(itemsOfBar)) {}

  /// Does the first action of the application's element, which is what a click does.
  void press(const AxeElement& item) override;

protected:
  [[nodiscard]] AxeElement::Facts barFacts() const override;
  [[nodiscard]] ChildLists readChildren(std::span<const AxeElement> level) override;

  platform::Accessibility& accessibility_;
  const platform::CallLimits limits_;

private:
  const platform::AccessibleElement bar_;
  const std::vector<platform::AccessibleElement> itemsOfBar_;
};

} // namespace tabwright::automation
