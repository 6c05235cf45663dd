#include "scripting/systemevents/SystemEventsScope.h"

namespace tabwright::scripting {

const std::vector<DesktopProcess>& SystemEventsScope::processes() {
  if (!processes_)
    processes_ = desktop_.processes();
  return *processes_;
}

const DesktopProcess& SystemEventsScope::process(Object object) {
  return processes().at(static_cast<std::size_t>(object.first));
}

const std::vector<std::size_t>& SystemEventsScope::path(Object object) const {
  return paths_.at(static_cast<std::size_t>(object.second));
}

std::int64_t SystemEventsScope::numberOf(const std::vector<std::size_t>& path) {
  const auto [entry, isNew] = numbers_.try_emplace(path, static_cast<std::int64_t>(paths_.size()));
  if (isNew)
    paths_.push_back(path);
  return entry->second;
}

const std::vector<MenuEntry>& SystemEventsScope::entries(Object process, const std::vector<std::size_t>& path) {
  const auto [menu, isNew] = menus_.try_emplace({process.first, path});
  if (isNew)
    // A menu may change between two readings; one event sees one state of it.
    menu->second = desktop_.elements().menuEntries(this->process(process), path, limits_);
  return menu->second;
}

const MenuEntry& SystemEventsScope::entry(Object object) {
  std::vector<std::size_t> parent = path(object);
  const std::size_t position = parent.back();
  parent.pop_back();
  return entries(object, parent).at(position);
}

} // namespace tabwright::scripting
