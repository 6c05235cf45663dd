#pragma once

#include "automation/DesktopServices.h"
#include "automation/MenuSource.h"
#include "platform/CallLimits.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::automation {

/// The menu behind the three dots of a browser of the Chromium family, as a menu bar with one item, which has the
/// button's title.
///
/// A menu can be read only while it is open. So each reading opens the menus one after another, in sight of the user,
/// some 50 ms each, and closes them again. They close by the Escape key, which goes to the active window; where that is
/// another application's, the browser comes to the front for that while. An item is pressed by opening the menus on its
/// way again. Titles come without the shortcuts that the browser puts behind them.
class ChromiumMenu final : public MenuSource {
public:
  /// The menu of the browser's active window, or else of its first one with a toolbar, whose elements may take a moment
  /// to appear; null when they don't. `services` outlives the menu. Throws DesktopFailure.
  [[nodiscard]] static std::shared_ptr<MenuSource> find(const platform::AccessibleElement& root, pid_t process,
                                                        const DesktopServices& services,
                                                        const platform::CallLimits& limits);

  /// Presses nothing where the item is disabled.
  void press(const AxeElement& item) override;

protected:
  [[nodiscard]] AxeElement::Facts barFacts() const override;
  [[nodiscard]] ChildLists readChildren(std::span<const AxeElement> level) override;

private:
  /// A menu that is open, by the positions of the items on its way.
  struct Shown {
    std::vector<std::size_t> path;
    std::vector<AxeElement> items;
  };

  ChromiumMenu(platform::AccessibleElement root, pid_t process, const DesktopServices& services,
               platform::CallLimits limits)
      : root_(std::move(root)), process_(process), services_(services), limits_(std::move(limits)) {}

  /// Looks once for the button; true when it is there.
  bool findButton();
  /// Opens the menu, and those on its way, as far as they aren't open. Its items stay valid until the next menu is
  /// shown.
  const std::vector<AxeElement>& show(const AxeElement& menu);
  /// The item as it is in the open menu, which is opened for that. Throws `elementGone` for one that isn't there any
  /// more.
  AxeElement onScreen(const AxeElement& item);
  /// Presses what opens the menu until it is open; no items when it doesn't.
  std::vector<AxeElement> open(const platform::AccessibleElement& opener, const AxeElement& menu);
  std::optional<std::vector<AxeElement>> readItems(const platform::AccessibleElement& popup, const AxeElement& menu);
  std::vector<AxeElement> itemsAmong(const std::vector<platform::AccessibleElement>& elements, const AxeElement& menu);
  /// The menu that was opened last; nothing while none is open.
  std::optional<platform::AccessibleElement> activePopup();
  std::optional<std::uint32_t> bringToFront();
  /// Closes all menus, and gives that window the focus back.
  void close(std::optional<std::uint32_t> windowBefore);

  const platform::AccessibleElement root_;
  const pid_t process_;
  const DesktopServices& services_;
  platform::CallLimits limits_;
  platform::AccessibleElement button_;
  platform::AccessibleFacts buttonFacts_;
  std::vector<Shown> shown_; ///< from the outermost on
};

} // namespace tabwright::automation
