#pragma once

#include "platform/AccessibleElement.h"
#include "platform/CallLimits.h"
#include "scripting/systemevents/Desktop.h"
#include "scripting/systemevents/UIElementKinds.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::scripting {

/// The windows of processes and the elements in them, as one event sees them. Each element is read once, when it is
/// first asked for, together with all others of its container.
///
/// An element is known by a number, good for as long as this lives. Layout containers without a name are left out, and
/// what they hold stands in their place. A modal dialog is a sheet of the window that waits for it: the first of its
/// elements.
///
/// Throws a platform::Failure where an application doesn't show its elements, and `elementGone` for a window that the
/// application doesn't show.
class UIElementTree {
public:
  using Number = std::int64_t;

  struct Node {
    const DesktopProcess* process = nullptr;
    std::int64_t processPosition = 0;            ///< among all processes
    const DesktopWindow* window = nullptr;       ///< null for what isn't a window
    std::optional<Number> parent;                ///< nothing for a window
    const UIElementRole* role = nullptr;         ///< null for a window
    platform::AccessibleFacts facts;             ///< name, description, role, states and children
    platform::AccessibleElement element;         ///< of a window: empty until its elements are asked for
    std::optional<std::vector<Number>> children; ///< nothing: not read yet
    std::optional<std::vector<UIElementAction>> actions;
  };

  /// Both outlive this.
  UIElementTree(DesktopElements& elements, const platform::CallLimits& limits) : elements_(elements), limits_(limits) {}

  [[nodiscard]] const Node& node(Number number) const { return nodes_.at(static_cast<std::size_t>(number)); }
  /// A window of a process, of which this keeps pointers; the same number for the same window.
  [[nodiscard]] Number window(const DesktopProcess& process, std::int64_t processPosition, const DesktopWindow& window);
  /// The modal dialogs of a window. Asks no application.
  [[nodiscard]] std::vector<Number> sheets(Number window);

  [[nodiscard]] const std::vector<Number>& children(Number container);
  /// All that is in a container, what is in an element before the element behind it. Reads a level at a time.
  [[nodiscard]] std::vector<Number> everythingIn(Number container);
  [[nodiscard]] const std::vector<UIElementAction>& actions(Number number);
  /// More about one element. The parts that it hasn't are nothing.
  [[nodiscard]] platform::AccessibleFacts read(Number number, const platform::AccessibleParts& parts);
  [[nodiscard]] const platform::AccessibleElement& element(Number number);

private:
  void readChildren(const std::vector<Number>& containers);
  [[nodiscard]] platform::AccessibleElement findWindow(const Node& window);
  void awaitControls(Node& window);

  DesktopElements& elements_;
  const platform::CallLimits& limits_;
  std::deque<Node> nodes_;
  std::map<const DesktopWindow*, Number> windows_;
};

} // namespace tabwright::scripting
