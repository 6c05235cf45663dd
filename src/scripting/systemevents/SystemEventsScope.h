#pragma once

#include "scripting/model/EventScope.h"
#include "scripting/systemevents/Desktop.h"
#include "scripting/systemevents/UIElementTree.h"

#include <cstddef>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace tabwright::scripting {

/// The desktop as one event sees it: the processes as they were when the event first asked, and the menus and
/// elements that it has read so far, each read once. In the objects of processes and menus, `first` is the process's
/// position; `second` is the number of a menu path that this scope has handed out.
class SystemEventsScope : public EventScope {
public:
  /// The desktop outlives the scope, as do the model and the message.
  SystemEventsScope(const ObjectModel& model, std::shared_ptr<applescript::ScriptableApplication> application,
                    const applescript::AppleEventMessage& message, Desktop& desktop)
      : EventScope(model, std::move(application), message), desktop_(desktop),
        limits_{message.deadline, message.stop, message.notices}, tree_(desktop.elements(), limits_) {}

  [[nodiscard]] Desktop& desktop() const { return desktop_; }
  /// The event's deadline, its stop, and whom to give notices.
  [[nodiscard]] const platform::CallLimits& limits() const { return limits_; }

  /// Asked for once; the references are good as long as the scope. Throws a platform::Failure.
  [[nodiscard]] const std::vector<DesktopProcess>& processes();
  /// The process of an object of this event: itself, or the one that its menu belongs to.
  [[nodiscard]] const DesktopProcess& process(Object object);

  /// The windows of the processes, and the elements in them, each read when it is first asked for.
  [[nodiscard]] UIElementTree& tree() { return tree_; }

  /// The path of an object of the menu bar; of a menu, that of the entry that opens it.
  [[nodiscard]] const std::vector<std::size_t>& path(Object object) const;
  /// The number of a path, the same for the same path: objects have room for numbers only.
  [[nodiscard]] std::int64_t numberOf(const std::vector<std::size_t>& path);
  /// Entries of the menu that opens at a path, of the menu bar at the empty path. The reference is good as long as the
  /// scope. Throws a platform::Failure for an application whose menus can't be read.
  [[nodiscard]] const std::vector<MenuEntry>& entries(Object process, const std::vector<std::size_t>& path);
  /// The entry at an object's path. The path must not be empty.
  [[nodiscard]] const MenuEntry& entry(Object object);

private:
  Desktop& desktop_;
  const platform::CallLimits limits_;
  std::optional<std::vector<DesktopProcess>> processes_;
  UIElementTree tree_;
  /// Paths by their numbers, and the way back; menus by the position of their process and their path.
  std::vector<std::vector<std::size_t>> paths_;
  std::map<std::vector<std::size_t>, std::int64_t> numbers_;
  std::map<std::pair<std::int64_t, std::vector<std::size_t>>, std::vector<MenuEntry>> menus_;
};

/// The scope as the tables of this dictionary get it: they are called with no other.
[[nodiscard]] inline SystemEventsScope& systemEvents(EventScope& scope) {
  return static_cast<SystemEventsScope&>(scope);
}

} // namespace tabwright::scripting
