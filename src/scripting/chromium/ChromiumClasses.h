#pragma once

#include "scripting/model/ObjectModel.h"

namespace tabwright::scripting {

/// The classes of the Chromium dictionary as tables over BrowserScope: application, window, tab.
[[nodiscard]] const ObjectModel& chromiumModel();
[[nodiscard]] const ObjectClass& chromiumWindowClass();
[[nodiscard]] const ObjectClass& chromiumTabClass();

} // namespace tabwright::scripting
