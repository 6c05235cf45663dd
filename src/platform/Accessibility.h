#pragma once

#include "platform/AccessibleElement.h"
#include "platform/CallLimits.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::platform {

/// The elements of running applications: their windows, menus and controls, read and operated from outside.
///
/// Purpose: everything above that reads menus, presses buttons or fills fields speaks to this, and never to a bus.
///
///     const auto mousepad = accessibility.findApplication(pid, limits);
///     const auto facts = accessibility.read({&*mousepad, 1}, {.children = true}, limits);
///     const auto windows = accessibility.read(*facts[0].children, {.name = true, .role = true}, limits);
///
/// A tree is read level by level: one call takes all elements of a level and asks about all of them before it awaits
/// the first answer. So a level costs some 0.03 ms an element, and a call for each element five times that.
///
/// Limits: closed menus can be read in most applications; some fill a menu only when it is shown, and then it has no
/// children before. Chromium shows its own controls only when it was told to.
///
/// All calls block their thread. They end by the deadline, and when an application has been silent for
/// `longestSilence`; so one that hangs costs its caller that, and no other. They may come from several threads, and
/// none waits for another. All throw DesktopFailure: `noAccessibilityBus`, `notAnswering`, `stopped`; those that
/// operate an element also `elementGone` and `elementRefused`.
class Accessibility {
public:
  /// A healthy application answers within some milliseconds, and a busy one within this.
  static constexpr std::chrono::milliseconds longestSilence{500};
  /// Applications join the bus within this after they show a window, or after accessibility was switched on.
  static constexpr std::chrono::milliseconds longestArrival{2000};
  /// Applications that run for less than this may still have to join.
  static constexpr std::chrono::milliseconds longestStart{10000};

  virtual ~Accessibility() = default;

  /// All applications that show themselves, in no order. Asks nothing of them, so none that hangs is noticed. Several
  /// displays may share a bus: an application is known by its process.
  [[nodiscard]] virtual std::vector<AccessibleApplication> applications(const CallLimits& limits) = 0;

  /// The application element of a process. One that may still have to join is waited for, for `longestArrival`. Nothing
  /// for one that doesn't show itself, or is gone.
  [[nodiscard]] virtual std::optional<AccessibleElement> findApplication(pid_t process, const CallLimits& limits) = 0;

  /// The parts of each element, in the order of the elements.
  [[nodiscard]] virtual std::vector<AccessibleFacts> read(std::span<const AccessibleElement> elements,
                                                          const AccessibleParts& parts, const CallLimits& limits) = 0;

  /// The elements at places of tables, in the order of the places; nothing where there is none. Toolkits that show
  /// tables without rows list all cells of a table as its children, which takes long for many.
  [[nodiscard]] virtual std::vector<std::optional<AccessibleElement>> cells(std::span<const AccessiblePlace> places,
                                                                            const CallLimits& limits) = 0;
  /// For each of some rows of a table, in a row from `first`, true when it is selected.
  [[nodiscard]] virtual std::vector<bool> selectedRows(const AccessibleElement& table, int first, int count,
                                                       const CallLimits& limits) = 0;

  /// Does an action of the element's, by its position among its `actions`; 0 does what a click does. Returns when the
  /// application has taken it up, and doesn't wait for a dialog that it opens. An element that is disabled takes it up
  /// and does nothing, which is no error.
  virtual void perform(const AccessibleElement& element, std::size_t action, const CallLimits& limits) = 0;

  /// Replaces the whole text of an element that can be edited.
  virtual void setText(const AccessibleElement& element, const std::string& text, const CallLimits& limits) = 0;

  /// Sets the value of a slider and the like. Values beyond its ends may be clamped or ignored.
  virtual void setValue(const AccessibleElement& element, double value, const CallLimits& limits) = 0;

  /// Selects an element within the list, the tabs or whatever else it is in, or takes it out of the selection there.
  /// Throws `elementRefused` where nothing can be selected from outside, and where the application doesn't do it.
  virtual void select(const AccessibleElement& element, AccessibleSelection selection, const CallLimits& limits) = 0;
  /// The same of a row of a table.
  virtual void selectRow(const AccessibleElement& table, int row, AccessibleSelection selection,
                         const CallLimits& limits) = 0;

  /// Gives an element the keyboard within its window; whether its window has it is another matter.
  virtual void focus(const AccessibleElement& element, const CallLimits& limits) = 0;
};

} // namespace tabwright::platform
