#pragma once

#include "scripting/model/ObjectModel.h"

namespace tabwright::scripting {

/// The classes of the System Events dictionary as tables over SystemEventsScope: application, process, window, menu
/// bar, menu bar item, menu, menu item.
[[nodiscard]] const ObjectModel& systemEventsModel();

/// The commands ask for an object's class: an application process or process; a menu item or menu bar item.
[[nodiscard]] bool isProcess(Object object);
[[nodiscard]] bool isMenuEntry(Object object);

} // namespace tabwright::scripting
