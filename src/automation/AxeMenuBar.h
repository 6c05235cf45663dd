#pragma once

#include "automation/AxeMenuItem.h"
#include "automation/TitlePattern.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tabwright::automation {

/// The menu bar of a running application, and the searches in it. Each reads the menus as they are at that moment.
class AxeMenuBar {
public:
  /// Nothing for an element that is no menu bar.
  [[nodiscard]] static std::optional<AxeMenuBar> of(const targets::RunningApplication& app, const AxeElement& element);

  /// The item at the end of a path of titles. On each level the first item of that title counts: where two have the
  /// same, nothing below the second can be found. Reads those levels only.
  [[nodiscard]] MenuItemResult menuItem(std::span<const std::string> pathSegments, TitleCase titleCase) const;

  /// The first item that fits, from the top of each menu down, and what is in an item's menu before the item behind it.
  /// An item of the bar is found by its whole title alone, whatever the filter. Reads all menus, level by level.
  [[nodiscard]] MenuItemResult menuItem(std::string_view title, StringFilterEnum filter, TitleCase titleCase) const;

  /// The bar itself, whose children are the items in it.
  [[nodiscard]] const AxeElement& element() const { return element_; }

private:
  AxeMenuBar(const targets::RunningApplication& app, const AxeElement& element) : app_(app), element_(element) {}
  /// The item that an element is, or `menuItemNotFound` for one that is none.
  [[nodiscard]] MenuItemResult found(const AxeElement& element) const;
  /// `menuItemNotFound`, with what kept the menus from being read as its cause, else the sentence, if there is one.
  [[nodiscard]] engine::AxeFailure notFound(const std::string& sentence) const;

  targets::RunningApplication app_;
  AxeElement element_;
};

} // namespace tabwright::automation
