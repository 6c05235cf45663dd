#pragma once

#include "automation/AxeElement.h"
#include "platform/Failure.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tabwright::automation {

/// The children of elements, one list for each.
using ChildLists = std::vector<std::vector<AxeElement>>;

/// Reads the menus of one application and presses their items, by whatever way the application's toolkit asks for.
///
/// A source serves one caller's thread. It keeps nothing of what it has read: each call asks the application anew.
class MenuSource : public std::enable_shared_from_this<MenuSource> {
public:
  virtual ~MenuSource() = default;

  /// The menu bar; its children are not read yet.
  [[nodiscard]] AxeElement bar();

  /// The children of all elements of a level, in their order; no more round trips than for one. An application that
  /// fails or doesn't answer makes it nothing, and is remembered. Throws DesktopFailure `stopped`.
  [[nodiscard]] std::optional<ChildLists> children(std::span<const AxeElement> level);

  /// Does what a click on the item does: runs it, or opens its menu. Returns when the application has taken it up, and
  /// doesn't wait for a dialog. An item that is disabled does nothing. Throws DesktopFailure.
  virtual void press(const AxeElement& item) = 0;

  /// The last failure that kept something from being read; nothing when all went well.
  [[nodiscard]] const std::optional<platform::Notice>& failure() const { return failure_; }

protected:
  /// The bar's facts, but for its source and role.
  [[nodiscard]] virtual AxeElement::Facts barFacts() const = 0;
  /// Throws DesktopFailure.
  [[nodiscard]] virtual ChildLists readChildren(std::span<const AxeElement> level) = 0;

private:
  std::optional<platform::Notice> failure_;
};

} // namespace tabwright::automation
