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
///     UIElementTree tree(desktop.elements(), limits);
///     const UIElementTree::Number window = tree.window(process, 0, process.windows.front());
///     for (const UIElementTree::Number each : tree.children(window))
///       print(tree.node(each).role->role, tree.node(each).facts.name);
///
/// An element is known by a number, good for as long as this lives. Layout containers without a name are left out, and
/// what they hold stands in their place. A modal dialog is a sheet of the window that waits for it: the first of its
/// elements. For one thread.
///
/// Throws a platform::Failure where an application doesn't show its elements: `notShown`, also for a window of which it
/// shows nothing while it shows others; `elementGone` where it shows no window at all.
class UIElementTree {
public:
  using Number = std::int64_t;

  /// A window or an element. Valid as long as the tree, as are pointers to it.
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

  /// As it was read; asks no application. Throws std::out_of_range for a number that this hasn't given.
  [[nodiscard]] const Node& node(Number number) const { return nodes_.at(static_cast<std::size_t>(number)); }
  /// A window of a process, of which this keeps pointers; the same number for the same window.
  [[nodiscard]] Number window(const DesktopProcess& process, std::int64_t processPosition, const DesktopWindow& window);
  /// The modal dialogs of a window. Asks no application.
  [[nodiscard]] std::vector<Number> sheets(Number window);

  /// The elements in a window or element, a window's sheets first, without what is hidden. Read when first asked for.
  [[nodiscard]] const std::vector<Number>& children(Number container);
  /// All that is in a container, what is in an element before the element behind it. Reads a level at a time.
  [[nodiscard]] std::vector<Number> everythingIn(Number container);
  /// The actions of an element, asked for once. A window has "AXRaise" alone.
  [[nodiscard]] const std::vector<UIElementAction>& actions(Number number);
  /// More about one element. The parts that it hasn't are nothing.
  [[nodiscard]] platform::AccessibleFacts read(Number number, const platform::AccessibleParts& parts);
  /// The application's element; a window's is looked for when it is first asked for.
  [[nodiscard]] const platform::AccessibleElement& element(Number number);

private:
  /// Reads the children of several containers at once. Each must be unread.
  void readChildren(const std::vector<Number>& containers);
  /// The application's element that is most like the window.
  [[nodiscard]] platform::AccessibleElement findWindow(const Node& window);
  /// Waits for what a browser shows in a window, for a while.
  void awaitControls(Node& window);

  DesktopElements& elements_;
  const platform::CallLimits& limits_;
  /// A deque, since references to nodes must hold while others are added.
  std::deque<Node> nodes_;
  std::map<const DesktopWindow*, Number> windows_;
};

} // namespace tabwright::scripting
