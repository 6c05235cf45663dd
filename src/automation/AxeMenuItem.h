#pragma once

#include "automation/AxeElement.h"
#include "engine/errors/AxeError.h"
#include "platform/CallLimits.h"
#include "targets/BrowserProbe.h"

#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::automation {

/// A menu item that a search has found in a running application. It is good for the run that has searched for it; what
/// may be kept is a `MenuItemEntity`.
struct AxeMenuItem {
  /// The application whose menus hold it.
  targets::RunningApplication app;
  /// As it was read; pressing goes to the application's own element behind it.
  AxeElement element;
  std::vector<std::string>
      pathSegments;       ///< titles from the top of the bar down to this item, blank ones left out above
  std::string path;       ///< the same, joined: "File > Export…"
  bool isSubMenu = false; ///< it opens a menu

  /// Nothing for an element that is neither a menu nor an item.
  [[nodiscard]] static std::optional<AxeMenuItem> of(const targets::RunningApplication& app, const AxeElement& element);

  /// False also for an item whose state can't be read.
  [[nodiscard]] bool isEnabled() const { return element.isEnabled(); }

  /// Chooses the item, or opens its menu where it has one. Returns when the application has taken it up; a dialog that
  /// it opens isn't waited for. An application that refuses it, is gone, or hangs is no failure: a notice of the limits
  /// tells it. Throws DesktopFailure `stopped`.
  void press(const platform::CallLimits& limits) const;
};

/// The outcome of a search: the item, or one of `appCouldNotBeActivated`, `appHasNoMenuBar` and `menuItemNotFound`,
/// whose cause tells what there is instead, or what kept the menus from being read.
using MenuItemResult = std::expected<AxeMenuItem, engine::AxeFailure>;

} // namespace tabwright::automation
