#pragma once

#include "scripting/model/ObjectModel.h"

namespace tabwright::scripting {

/// The classes of the Chromium dictionary as tables over BrowserScope: application, window, tab. One of each lives as
/// long as the program: commands tell the class of an object by the address.
[[nodiscard]] const ObjectModel& chromiumModel();
[[nodiscard]] const ObjectClass& chromiumWindowClass();
[[nodiscard]] const ObjectClass& chromiumTabClass();

} // namespace tabwright::scripting
